// A desktop that answers as the test tells it to, and remembers what it was
// asked.
//
// Thread: interface thread.

#pragma once

#include "core/Desktop.h"

#include <QList>

namespace quire {

class ScriptedDesktop final : public Desktop
{
public:
    std::optional<QString> answer; // to every question; absent: the reader cancels
    QList<FolderQuestion> questions;
    int pressed = 0; // on every alert
    QList<DesktopAlert> alerts;
    QList<QUrl> opened;

    QCoro::Task<std::optional<QString>> chooseFolder(FolderQuestion question) override
    {
        questions.append(question);
        co_return std::optional(answer); // a copy: what is returned by its name is moved from
    }

    QCoro::Task<int> showAlert(DesktopAlert alert) override
    {
        alerts.append(alert);
        co_return pressed;
    }

    void open(const QUrl &address) override { opened.append(address); }
};

} // namespace quire
