// The failures of what protects the library from imports and from sync
// services.

#pragma once

#include "records/Failure.h"

#include <QString>

namespace quire {

class QuireReliabilityError final : public Failure
{
public:
    enum class Kind {
        CloudConflictCopy,
        InvalidImport,
        CloudLibraryRolledBack,
        CloudLibraryDiverged,
    };

    // name: of the file that a sync service left beside the library.
    static QuireReliabilityError cloudConflictCopy(QString name);
    // detail: what was wrong with the imported data.
    static QuireReliabilityError invalidImport(QString detail);
    static QuireReliabilityError cloudLibraryRolledBack();
    static QuireReliabilityError cloudLibraryDiverged();

    Kind kind() const { return m_kind; }
    QString description() const override;

    bool operator==(const QuireReliabilityError &other) const
    {
        return m_kind == other.m_kind && m_detail == other.m_detail;
    }

private:
    explicit QuireReliabilityError(Kind kind, QString detail = {});

    Kind m_kind;
    QString m_detail; // the name or the detail, where the kind has one
};

} // namespace quire
