#pragma once

#include <QString>

namespace quire {

// What the interface shows in a modal notice.
struct AppNotice
{
    enum class Kind {
        Information,
        Error,
    };

    static AppNotice information(QString title, QString message);
    static AppNotice error(QString title, QString message);

    // Two notices of one kind with the same words are the same notice.
    QString id() const;

    bool operator==(const AppNotice &) const = default;

    Kind kind = Kind::Information;
    QString title;
    QString message;
};

} // namespace quire
