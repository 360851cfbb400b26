// The failure type of the database layer and of the library's location.

#pragma once

#include "records/Failure.h"

namespace quire {

class DatabaseError final : public Failure
{
public:
    enum class Kind {
        Open,
        Prepare,
        Step,
        Execute,
        Backup,
        LibraryBusy,
        InvalidLibraryLocation,
        MissingDatabase,
    };

    // text: what SQLite or the operation says of the cause; unused by
    // MissingDatabase.
    explicit DatabaseError(Kind kind, QString text = {});

    Kind kind() const { return m_kind; }
    const QString &text() const { return m_text; }
    QString description() const override;

    bool operator==(const DatabaseError &other) const { return m_kind == other.m_kind && m_text == other.m_text; }

private:
    Kind m_kind;
    QString m_text;
};

} // namespace quire
