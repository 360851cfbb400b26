// Records with every field set, and the looks at a library that the tests of
// edits and imports share.
//
// Thread: the test's.

#pragma once

#include "persistence/database/SQLiteValue.h"
#include "records/AudibleLibraryItem.h"
#include "records/GoodreadsFeedBook.h"
#include "testing/TestLibrary.h"

#include <QMap>
#include <QString>

namespace quire::testing {

// A feed's book with a value in every field.
GoodreadsFeedBook fullFeedBook(const QString &id = QStringLiteral("100"));
// One with an identifier, a title and a shelf, and nothing else.
GoodreadsFeedBook bareFeedBook(
    const QString &id, const QString &title, const QString &shelf = QStringLiteral("to-read"));

AudibleLibraryItem fullAudibleItem(const QString &asin = QStringLiteral("B0FULL"));
AudibleLibraryItem bareAudibleItem(const QString &asin, const QString &title);

Url url(const char *text);

// Lower-case hexadecimal SHA-256 of the text's UTF-8 bytes.
QString sha256(const QString &text);

// One row of the audit trail.
struct Trail
{
    QString firstSeenAt;
    QString lastSeenAt;
    QString hash;
    qint64 applied = 0;
};

// The trail of one title and source, by field.
QMap<QString, Trail> trailOf(const TestLibrary &library, const char *kind, qint64 id, const char *source);

// As trailOf, hash alone: what was said last of each field.
QMap<QString, QString> hashesOf(const TestLibrary &library, const char *kind, qint64 id, const char *source);

// What trailOf must hold for these texts.
QMap<QString, QString> hashesOf(const QMap<QString, QString> &texts);

// All rows of all tables, for "nothing has changed".
QMap<QString, QList<SQLiteRow>> everything(const TestLibrary &library);

// Whether SQL's clock wrote this text within the last minute.
bool isSqlNow(const TestLibrary &library, const SQLiteValue &value);

// Makes every write of `table` fail for rows that meet `condition`.
// event: "INSERT" or "UPDATE".
void failOn(TestLibrary &library, const QString &event, const QString &table, const QString &condition);

} // namespace quire::testing
