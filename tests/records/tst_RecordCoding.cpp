#include "records/RecordCoding.h"

#include <QBuffer>
#include <QCborArray>
#include <QCborMap>
#include <QCborStreamReader>
#include <QCborStreamWriter>
#include <QCborValue>

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <random>

namespace quire {

namespace {

template<typename Record>
QByteArray encoded(const Record &record)
{
    QByteArray bytes;
    QCborStreamWriter writer(&bytes);
    encode(writer, record);
    return bytes;
}

template<typename Record>
Record decoded(const QByteArray &bytes)
{
    QCborStreamReader reader(bytes);
    return decode<Record>(reader);
}

template<typename Record>
QCborMap mapOf(const Record &record)
{
    return QCborValue::fromCbor(encoded(record)).toMap();
}

QStringList keysOf(const QCborMap &map)
{
    QStringList keys;
    for (const QCborValue &key : map.keys()) {
        keys.append(key.toString());
    }
    return keys;
}

const auto url = Url::parse(QStringLiteral("https://example.org/a"));

Book fullBook()
{
    Book book;
    book.id = 7;
    book.goodreadsID = QStringLiteral("g7");
    book.title = QStringLiteral("Élan, 百年");
    book.author = QStringLiteral("A. Author");
    book.isbn = QStringLiteral("9780000000001");
    book.shelf = QStringLiteral("read");
    book.userRating = 4.5;
    book.averageRating = 3.99;
    book.numberOfPages = 321;
    book.summary = QString();
    book.goodreadsURL = url;
    book.publishedYear = -400;
    book.coverURL = url;
    book.goodreadsImageURL = url;
    book.coverData = CoverBytes(QByteArray("\x00\xff\x89PNG", 6));
    book.readAt = QStringLiteral("no date, kept as it is");
    book.dateAdded = QStringLiteral("2024-03-05");
    book.dateSynced = QStringLiteral("2024-03-05");
    book.dateModified = QStringLiteral("2024-03-05");
    book.notes = QStringLiteral("line\nline");
    book.tags = {QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("b")};
    book.isHidden = true;
    return book;
}

Audiobook fullAudiobook()
{
    Audiobook a;
    a.id = std::numeric_limits<qint64>::min();
    a.asin = QStringLiteral("B0");
    a.title = QStringLiteral("t");
    a.author = a.narrator = a.series = QStringLiteral("x");
    a.bookNumber = std::numeric_limits<qint64>::max();
    a.coverURL = a.audibleURL = url;
    a.coverData = CoverBytes(QByteArray(100'000, 'c'));
    a.dateAdded = a.dateSynced = a.finishedAt = a.releaseDate = a.purchaseDate = a.lastAudibleSync
        = QStringLiteral("d");
    a.notes = QStringLiteral("n");
    a.userRating = a.averageRating = a.performanceRating = a.storyRating = 0.0;
    a.summary = QStringLiteral("s");
    a.status = QStringLiteral("reading");
    a.runtimeMinutes = a.reviewCount = 0;
    a.listeningProgress = 99.9;
    a.audibleOwned = true;
    return a;
}

AudibleCatalogBook fullCatalogBook()
{
    const QString x = QStringLiteral("x");
    return {x, x, x, x, x, 3, url, url, QStringLiteral("1999"), x};
}

TEST(RecordCoding, FullAndEmptyRecordsReadBackAsTheyWere)
{
    EXPECT_EQ(decoded<Book>(encoded(fullBook())), fullBook());
    EXPECT_EQ(decoded<Book>(encoded(Book())), Book());
    EXPECT_EQ(decoded<Audiobook>(encoded(fullAudiobook())), fullAudiobook());
    EXPECT_EQ(decoded<Audiobook>(encoded(Audiobook())), Audiobook());
    EXPECT_EQ(decoded<AudibleCatalogBook>(encoded(fullCatalogBook())), fullCatalogBook());
    EXPECT_EQ(decoded<AudibleCatalogBook>(encoded(AudibleCatalogBook())), AudibleCatalogBook());
    const TagCount tag{QStringLiteral("sea"), 12};
    EXPECT_EQ(decoded<TagCount>(encoded(tag)), tag);
}

TEST(RecordCoding, KeysAreTheNamesOfTheFields)
{
    const auto words = [](const char *text) { return QString::fromLatin1(text).split(u' '); };
    EXPECT_EQ(keysOf(mapOf(fullBook())),
        words("id goodreadsID title author isbn shelf userRating averageRating numberOfPages summary goodreadsURL "
              "publishedYear coverURL goodreadsImageURL coverData readAt dateAdded dateSynced dateModified notes tags "
              "isHidden"));
    EXPECT_EQ(keysOf(mapOf(fullAudiobook())),
        words("id asin title author narrator series bookNumber coverURL coverData audibleURL dateAdded dateSynced "
              "notes userRating finishedAt summary status runtimeMinutes releaseDate purchaseDate averageRating "
              "performanceRating storyRating reviewCount listeningProgress audibleOwned lastAudibleSync"));
    EXPECT_EQ(keysOf(mapOf(fullCatalogBook())),
        words("asin title author narrator series bookNumber coverURL audibleURL year summary"));
    EXPECT_EQ(keysOf(mapOf(TagCount())), words("tag count"));
    EXPECT_EQ(keysOf(mapOf(CustomAccentColor())), words("red green blue"));
}

TEST(RecordCoding, OptionalFieldsAreWrittenOnlyWhenPresent)
{
    EXPECT_EQ(keysOf(mapOf(Book())),
        QStringLiteral("id goodreadsID title author shelf userRating notes tags isHidden").split(u' '));
    EXPECT_EQ(keysOf(mapOf(Audiobook())), QStringLiteral("id asin title notes status audibleOwned").split(u' '));
    EXPECT_EQ(keysOf(mapOf(AudibleCatalogBook())), QStringLiteral("asin title").split(u' '));
}

TEST(RecordCoding, CoversAreBytesAndUrlsTheirText)
{
    const QCborMap map = mapOf(fullBook());
    EXPECT_EQ(map[QStringLiteral("coverData")].toByteArray(), fullBook().coverData->bytes());
    EXPECT_EQ(map[QStringLiteral("coverURL")].toString(), url->text());
}

TEST(RecordCoding, AColorsNumbersAreTakenAsTheyAreStored)
{
    const CustomAccentColor beyond{-1, 2.5, 1e300};
    EXPECT_EQ(decoded<CustomAccentColor>(encoded(beyond)), beyond);
}

// For each key of a full record: removed, it fails exactly the records of which
// it is a required field; of another type, it fails them all.
template<typename Record>
void expectStrictReading(const Record &full, const Record &empty)
{
    const QCborMap map = mapOf(full);
    const QStringList required = keysOf(mapOf(empty));
    for (const QString &key : keysOf(map)) {
        SCOPED_TRACE(key.toStdString());
        QCborMap without = map;
        without.remove(key);
        const QByteArray bytes = without.toCborValue().toCbor();
        if (required.contains(key)) {
            EXPECT_THROW(decoded<Record>(bytes), RecordCodingError);
        } else {
            EXPECT_NO_THROW(decoded<Record>(bytes));
        }
        const QList<QCborValue> others{QCborValue(qint64(1)), QCborValue(1.5), QCborValue(true),
            QCborValue(QStringLiteral("https://example.org/")), QCborValue(QByteArray("b")), QCborValue(QCborArray()),
            QCborValue(QCborMap()), QCborValue(QCborValue::Null), QCborValue(QCborValue::Undefined)};
        int accepted = 0;
        for (const QCborValue &other : others) {
            QCborMap changed = map;
            changed[key] = other;
            try {
                decoded<Record>(changed.toCborValue().toCbor());
                ++accepted;
                EXPECT_EQ(other.type(), map[key].type());
            } catch (const RecordCodingError &) {
                EXPECT_NE(other.type(), map[key].type());
            }
        }
        EXPECT_LE(accepted, 1);
    }
}

TEST(RecordCoding, AMissingRequiredKeyOrAWrongTypeFailsTheWholeRecord)
{
    expectStrictReading(fullBook(), Book());
    expectStrictReading(fullAudiobook(), Audiobook());
    expectStrictReading(fullCatalogBook(), AudibleCatalogBook());
    expectStrictReading(TagCount{QStringLiteral("t"), 1}, TagCount());
    expectStrictReading(CustomAccentColor{0.5, 0.25, 1}, CustomAccentColor());
}

TEST(RecordCoding, TheFailureNamesTheKeyThatIsMissing)
{
    QCborMap map = mapOf(Book());
    map.remove(QStringLiteral("notes"));
    try {
        decoded<Book>(map.toCborValue().toCbor());
        FAIL();
    } catch (const RecordCodingError &error) {
        EXPECT_EQ(error.description(), QStringLiteral("A stored record could not be read: the key notes is missing."));
    }
}

TEST(RecordCoding, UnknownKeysArePassedOver)
{
    QCborMap map = mapOf(fullBook());
    QCborMap nested;
    nested[QStringLiteral("id")] = QStringLiteral("not ours");
    map[QStringLiteral("later")] = nested;
    map[QStringLiteral("ID")] = QStringLiteral("another spelling is another key");
    EXPECT_EQ(decoded<Book>(map.toCborValue().toCbor()), fullBook());
}

TEST(RecordCoding, ValuesOutOfRangeAndTextsThatAreNoUrlsFail)
{
    const auto with = [](const QString &key, const QCborValue &value) {
        QCborMap map = mapOf(fullBook());
        map[key] = value;
        return map.toCborValue().toCbor();
    };
    EXPECT_THROW(decoded<Book>(with(QStringLiteral("coverURL"), QStringLiteral("no url"))), RecordCodingError);
    EXPECT_THROW(decoded<Book>(with(QStringLiteral("coverURL"), QString())), RecordCodingError);
    EXPECT_THROW(decoded<Book>(with(QStringLiteral("coverData"), QByteArray())), RecordCodingError);
    QCborArray mixed;
    mixed.append(QStringLiteral("a"));
    mixed.append(1);
    EXPECT_THROW(decoded<Book>(with(QStringLiteral("tags"), mixed)), RecordCodingError);

    const auto count = [](const QByteArray &number) {
        return QByteArray::fromHex("a2637461676161"
                                   "65636f756e74")
            + number;
    };
    EXPECT_EQ(decoded<TagCount>(count(QByteArray::fromHex("1b7fffffffffffffff"))).count, INT64_MAX);
    EXPECT_EQ(decoded<TagCount>(count(QByteArray::fromHex("3b7fffffffffffffff"))).count, INT64_MIN);
    EXPECT_THROW(decoded<TagCount>(count(QByteArray::fromHex("1b8000000000000000"))), RecordCodingError);
    EXPECT_THROW(decoded<TagCount>(count(QByteArray::fromHex("3b8000000000000000"))), RecordCodingError);
    EXPECT_THROW(decoded<TagCount>(count(QByteArray::fromHex("3bffffffffffffffff"))), RecordCodingError);
}

TEST(RecordCoding, AKeyThatStandsTwiceFails)
{
    EXPECT_THROW(decoded<TagCount>(QByteArray::fromHex("a3"
                                                       "63746167"
                                                       "6161"
                                                       "65636f756e74"
                                                       "01"
                                                       "63746167"
                                                       "6162")),
        RecordCodingError);
}

TEST(RecordCoding, EveryCutOfARecordFails)
{
    const QByteArray bytes = encoded(fullBook());
    for (qsizetype length = 0; length < bytes.size(); ++length) {
        EXPECT_THROW(decoded<Book>(bytes.left(length)), RecordCodingError) << length;
    }
}

TEST(RecordCoding, DamagedBytesGiveARecordOrATypedFailureAndNothingElse)
{
    const auto seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const QByteArray whole = encoded(fullBook());
    int failed = 0;
    for (int i = 0; i < 20'000; ++i) {
        QByteArray bytes = whole;
        for (std::size_t changes = 1 + random() % 3; changes > 0; --changes) {
            bytes[qsizetype(random() % std::size_t(bytes.size()))] = char(random());
        }
        try {
            decoded<Book>(bytes);
        } catch (const RecordCodingError &) {
            ++failed;
        }
    }
    EXPECT_GT(failed, 1'000);
}

TEST(RecordCoding, HostileLengthsAndDepthsFailWithoutTheMemoryTheyAskFor)
{
    const QByteArray head = QByteArray::fromHex("a2"
                                                "63746167");
    EXPECT_THROW(decoded<TagCount>(head + QByteArray::fromHex("7b7fffffffffffffff")), RecordCodingError);
    EXPECT_THROW(decoded<TagCount>(head + QByteArray::fromHex("7bffffffffffffffff")), RecordCodingError);
    EXPECT_THROW(decoded<TagCount>(head + QByteArray::fromHex("61ff")), RecordCodingError) << "not UTF-8";
    EXPECT_THROW(decoded<TagCount>(QByteArray::fromHex("bbffffffffffffffff")), RecordCodingError);
    EXPECT_THROW(decoded<TagCount>(QByteArray::fromHex("a16178") + QByteArray(100'000, '\x81')), RecordCodingError);
    for (const char *none : {"", "f6", "80", "01", "617a", "ff", "a0"}) {
        EXPECT_THROW(decoded<TagCount>(QByteArray::fromHex(none)), RecordCodingError) << none;
    }
}

TEST(RecordCoding, TextsAndListsBeyondAllReasonFail)
{
    Book book;
    book.notes = QString(16 * 1024 * 1024, u'x');
    EXPECT_EQ(decoded<Book>(encoded(book)), book);
    book.notes += u'x';
    EXPECT_THROW(decoded<Book>(encoded(book)), RecordCodingError);

    book = Book();
    book.tags = QStringList(10'000, QStringLiteral("t"));
    EXPECT_EQ(decoded<Book>(encoded(book)), book);
    book.tags.append(QString());
    EXPECT_THROW(decoded<Book>(encoded(book)), RecordCodingError);
}

TEST(RecordCoding, RecordsStandOneAfterAnotherInAStreamFromADevice)
{
    QByteArray bytes;
    {
        QCborStreamWriter writer(&bytes);
        writer.startArray(2);
        encode(writer, fullBook());
        encode(writer, Book());
        writer.endArray();
    }
    QBuffer device(&bytes);
    ASSERT_TRUE(device.open(QIODevice::ReadOnly));
    QCborStreamReader reader(&device);
    ASSERT_TRUE(reader.enterContainer());
    EXPECT_EQ(decode<Book>(reader), fullBook());
    EXPECT_EQ(decode<Book>(reader), Book());
    EXPECT_FALSE(reader.hasNext());
    EXPECT_TRUE(reader.leaveContainer());
}

} // namespace

} // namespace quire
