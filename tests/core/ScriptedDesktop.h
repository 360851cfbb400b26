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
    QList<QUrl> opened;

    QCoro::Task<std::optional<QString>> chooseFolder(FolderQuestion question) override
    {
        questions.append(question);
        co_return std::optional(answer); // a copy: what is returned by its name is moved from
    }

    void open(const QUrl &address) override { opened.append(address); }
};

} // namespace quire
