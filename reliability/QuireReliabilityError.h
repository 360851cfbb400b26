// The failures of what protects the library from imports and from sync
// services.

#pragma once

#include "records/Failure.h"

namespace quire {

class QuireReliabilityError final : public Failure
{
public:
    enum class Kind {
        InvalidImport,
    };

    // detail: what was wrong with the imported data.
    static QuireReliabilityError invalidImport(QString detail);

    Kind kind() const { return m_kind; }
    QString description() const override;

private:
    QuireReliabilityError(Kind kind, QString detail);

    Kind m_kind;
    QString m_detail;
};

} // namespace quire
