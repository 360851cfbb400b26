#include "testing/ImportRecords.h"

#include <QCryptographicHash>

namespace quire::testing {

Url url(const char *text)
{
    return Url::parse(QString::fromLatin1(text)).value();
}

GoodreadsFeedBook bareFeedBook(const QString &id, const QString &title, const QString &shelf)
{
    GoodreadsFeedBook book;
    book.goodreadsID = id;
    book.title = title;
    book.shelf = shelf;
    return book;
}

GoodreadsFeedBook fullFeedBook(const QString &id)
{
    return {
        .goodreadsID = id,
        .title = QStringLiteral("The Feed Title"),
        .author = QStringLiteral("Feed Author"),
        .isbn = QStringLiteral("9780000000001"),
        .shelf = QStringLiteral("to-read"),
        .userRating = 4,
        .averageRating = 3.97,
        .numberOfPages = 320,
        .summary = QStringLiteral("A summary of the feed."),
        .goodreadsURL = url("https://books.example/show/100"),
        .publishedYear = 1987,
        .coverURL = url("https://covers.example/100.jpg"),
        .goodreadsImageURL = url("https://images.example/100.jpg"),
        .readAt = QStringLiteral("Sat, 14 Mar 2020 00:00:00 -0700"),
        .dateAdded = QStringLiteral("Sun, 01 Mar 2020 10:00:00 -0700"),
    };
}

AudibleLibraryItem bareAudibleItem(const QString &asin, const QString &title)
{
    AudibleLibraryItem item;
    item.asin = asin;
    item.title = title;
    return item;
}

AudibleLibraryItem fullAudibleItem(const QString &asin)
{
    return {
        .asin = asin,
        .title = QStringLiteral("The Audio Title"),
        .author = QStringLiteral("Audio Author"),
        .narrator = QStringLiteral("A Narrator"),
        .series = QStringLiteral("A Series"),
        .bookNumber = 2,
        .coverURL = url("https://covers.example/audio.jpg"),
        .audibleURL = url("https://audio.example/pd/B0FULL"),
        .summary = QStringLiteral("A summary of the application."),
        .runtimeMinutes = 640,
        .releaseDate = QStringLiteral("2019-05-07"),
        .purchaseDate = QStringLiteral("2020-06-01T10:00:00Z"),
        .averageRating = 4.5,
        .performanceRating = 4.25,
        .storyRating = 4.75,
        .reviewCount = 1200,
        .listeningProgress = 40,
        .isStarted = true,
        .isFinished = false,
        .ownedIndefinitely = true,
    };
}

QString sha256(const QString &text)
{
    return QString::fromLatin1(QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256).toHex());
}

QMap<QString, Trail> trailOf(const TestLibrary &library, const char *kind, qint64 id, const char *source)
{
    QMap<QString, Trail> trail;
    const auto rows
        = library.query("SELECT * FROM field_provenance WHERE entity_kind = ? AND entity_id = ? AND source = ?",
            {QString::fromLatin1(kind), id, QString::fromLatin1(source)});
    for (const SQLiteRow &row : rows) {
        trail.insert(row.string(QStringLiteral("field_name"), {}),
            {
                .firstSeenAt = row.string(QStringLiteral("first_seen_at"), {}),
                .lastSeenAt = row.string(QStringLiteral("last_seen_at"), {}),
                .hash = row.string(QStringLiteral("last_value_hash"), {}),
                .applied = row.intValue(QStringLiteral("applied")).value_or(-1),
            });
    }
    return trail;
}

QMap<QString, QString> hashesOf(const TestLibrary &library, const char *kind, qint64 id, const char *source)
{
    QMap<QString, QString> hashes;
    const auto trail = trailOf(library, kind, id, source);
    for (auto field = trail.cbegin(); field != trail.cend(); ++field) {
        hashes.insert(field.key(), field->hash);
    }
    return hashes;
}

QMap<QString, QString> hashesOf(const QMap<QString, QString> &texts)
{
    QMap<QString, QString> hashes;
    for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
        hashes.insert(text.key(), sha256(*text));
    }
    return hashes;
}

QMap<QString, QList<SQLiteRow>> everything(const TestLibrary &library)
{
    QMap<QString, QList<SQLiteRow>> rows;
    for (const char *table :
        {"settings", "goodreads_books", "book_tags", "audible_books", "field_provenance", "library_metadata"}) {
        const QByteArray sql
            = QByteArrayLiteral("SELECT rowid, * FROM ") + table + QByteArrayLiteral(" ORDER BY rowid");
        rows.insert(QString::fromLatin1(table), library.query(sql.constData()));
    }
    return rows;
}

bool isSqlNow(const TestLibrary &library, const SQLiteValue &value)
{
    const auto age = library.scalar("SELECT CAST(strftime('%s', 'now') AS INTEGER) - strftime('%s', ?)", {value});
    return age.intValue() && *age.intValue() >= 0 && *age.intValue() < 60;
}

void failOn(TestLibrary &library, const QString &event, const QString &table, const QString &condition)
{
    const QString sql = QStringLiteral("CREATE TRIGGER fail_%1_%2 BEFORE %1 ON %2 WHEN %3 "
                                       "BEGIN SELECT RAISE(ABORT, 'refused by the test'); END")
                            .arg(event, table, condition);
    library.executeScript(sql.toUtf8().constData());
}

} // namespace quire::testing
