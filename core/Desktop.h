// What the program asks of the desktop around it. A test answers in its place.
//
// Thread: interface thread.

#pragma once

#include <QCoroTask>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace quire {

// One question for a folder that is already there or may be made on the way.
struct FolderQuestion
{
    QString title;
    QString message;
    std::optional<QString> prompt; // the word on the button that answers; absent: the desktop's own
    QString startFolder; // absolute
    bool allowsNewFolders = false;

    bool operator==(const FolderQuestion &) const = default;
};

// Something told over the window, with the buttons to answer it.
struct DesktopAlert
{
    QString title;
    QString message;
    QStringList buttons; // at least one; the first is the one that Return presses

    bool operator==(const DesktopAlert &) const = default;
};

class Desktop
{
public:
    virtual ~Desktop() = default;

    // The absolute path of the folder the reader chose; nothing when they chose
    // none. A question asked while another stands is answered with nothing.
    virtual QCoro::Task<std::optional<QString>> chooseFolder(FolderQuestion question) = 0;

    // The place of the button that the reader pressed, from 0; the last one's when
    // the alert was put away otherwise. One after the other, if several are asked
    // for.
    virtual QCoro::Task<int> showAlert(DesktopAlert alert) = 0;

    // Opens a folder, a file or a page with the program the desktop has for it.
    // What cannot be opened is for the desktop to tell.
    virtual void open(const QUrl &address) = 0;
};

} // namespace quire
