// The failure to read JSON as the record that was expected: Qt's parser gave up,
// or a value is missing or of another type.

#pragma once

#include "records/Failure.h"

#include <QJsonParseError>

namespace quire {

class JSONDecodingError final : public Failure
{
public:
    enum class Kind {
        Syntax,
        TooManyValues,
        WrongType,
        MissingMember,
    };

    // Qt's parser failed at byte `offset`.
    static JSONDecodingError syntax(QJsonParseError::ParseError code, qsizetype offset);
    static JSONDecodingError tooManyValues();
    // expected: completes "is not …", as in "a text".
    static JSONDecodingError wrongType(QString expected);
    static JSONDecodingError missingMember();

    // The same failure, met inside the value that `step` leads to from its
    // parent: "name" for a member, "[3]" for an entry of a list.
    JSONDecodingError within(const QString &step) const;

    Kind kind() const { return m_kind; }
    QJsonParseError::ParseError code() const { return m_code; } // of Syntax, else NoError
    // Where, from the document's root: "products[3].title"; empty for the root.
    const QString &path() const { return m_path; }
    QString description() const override;

private:
    JSONDecodingError(Kind kind, QString expected);

    Kind m_kind;
    QJsonParseError::ParseError m_code = QJsonParseError::NoError;
    qsizetype m_offset = 0; // of Syntax
    QString m_expected; // of WrongType
    QString m_path;
};

} // namespace quire
