#include "reliability/QuireBackupManifest.h"

#include "files/FileError.h"
#include "testing/ThrownFailure.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;

namespace {

QuireBackupManifest example()
{
    QuireBackupManifest manifest;
    manifest.createdAt = QStringLiteral("2026-11-16T03:41:09.123Z");
    manifest.databaseSHA256 = QStringLiteral("0123456789abcdef").repeated(4);
    manifest.libraryUUID = QStringLiteral("00112233445566778899aabbccddeeff");
    manifest.generation = 4711;
    manifest.bookCount = 12;
    manifest.audiobookCount = 3;
    return manifest;
}

// The example with one field set to something else.
QByteArray with(QStringView key, const QJsonValue &value)
{
    QJsonObject object = QJsonDocument::fromJson(example().encoded()).object();
    object[key] = value;
    return QJsonDocument(object).toJson();
}

QByteArray without(QStringView key)
{
    QJsonObject object = QJsonDocument::fromJson(example().encoded()).object();
    object.remove(key);
    return QJsonDocument(object).toJson();
}

} // namespace

TEST(QuireBackupManifest, IsIndentedJsonWithSortedKeys)
{
    EXPECT_EQ(example().encoded(), QByteArray(R"({
    "audiobookCount": 3,
    "bookCount": 12,
    "createdAt": "2026-11-16T03:41:09.123Z",
    "databaseSHA256": "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef",
    "formatVersion": 1,
    "generation": 4711,
    "integrityCheck": "ok",
    "libraryUUID": "00112233445566778899aabbccddeeff",
    "schemaVersion": 2
}
)"));
}

TEST(QuireBackupManifest, ReadsBackWhatItWrote)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.manifest.json"));

    example().write(path);

    EXPECT_EQ(QuireBackupManifest::read(path), example());
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 1);
}

TEST(QuireBackupManifest, KeepsAllBitsOfTheGeneration)
{
    for (const qint64 generation :
        {qint64(9'007'199'254'740'993), std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()}) {
        QuireBackupManifest manifest = example();
        manifest.generation = generation;
        EXPECT_EQ(QuireBackupManifest::decoded(manifest.encoded()), manifest) << generation;
    }
}

TEST(QuireBackupManifest, IsNoManifestWhenAFieldIsMissingOrOfAnotherType)
{
    for (const QStringView key : {u"audiobookCount", u"bookCount", u"createdAt", u"databaseSHA256", u"formatVersion",
             u"generation", u"integrityCheck", u"libraryUUID", u"schemaVersion"}) {
        SCOPED_TRACE(key.toUtf8().constData());
        EXPECT_EQ(QuireBackupManifest::decoded(without(key)), std::nullopt);
        for (const QJsonValue &value :
            {QJsonValue(), QJsonValue(true), QJsonValue(1.5), QJsonValue(QJsonObject()), QJsonValue(1e30)}) {
            EXPECT_EQ(QuireBackupManifest::decoded(with(key, value)), std::nullopt);
        }
    }
    EXPECT_EQ(QuireBackupManifest::decoded(with(u"bookCount", QStringLiteral("12"))), std::nullopt);
    EXPECT_EQ(QuireBackupManifest::decoded(with(u"createdAt", 12)), std::nullopt);
}

TEST(QuireBackupManifest, IsNoManifestWithAValueOutOfItsRange)
{
    EXPECT_EQ(QuireBackupManifest::decoded(with(u"formatVersion", 2)), std::nullopt);
    EXPECT_EQ(QuireBackupManifest::decoded(with(u"bookCount", -1)), std::nullopt);
    EXPECT_EQ(QuireBackupManifest::decoded(with(u"audiobookCount", -1)), std::nullopt);
    const QString digest = example().databaseSHA256;
    for (const QString &wrong : {QString(), digest.toUpper(), digest.chopped(1), digest + u'0',
             digest.chopped(1) + u'g', digest.chopped(1) + QChar(0x0660)}) {
        EXPECT_EQ(QuireBackupManifest::decoded(with(u"databaseSHA256", wrong)), std::nullopt);
    }
}

TEST(QuireBackupManifest, PassesOverKeysThatItDoesNotKnow)
{
    EXPECT_EQ(QuireBackupManifest::decoded(with(u"madeBy", QStringLiteral("a later version"))), example());
}

TEST(QuireBackupManifest, IsNoManifestWhenItIsNoJsonObject)
{
    const QByteArray whole = example().encoded();
    for (const QByteArray &bytes : {QByteArray(), QByteArray("null"), QByteArray("[]"), QByteArray("{}"),
             QByteArray("\0\0\0\0", 4), QByteArray("\xff\xfe{}"), '[' + whole + ']', whole + whole,
             QByteArray(100'000, '['), QByteArray("{\"a\":").repeated(10'000)}) {
        EXPECT_EQ(QuireBackupManifest::decoded(bytes), std::nullopt) << bytes.left(40).constData();
    }
}

TEST(QuireBackupManifest, IsNoManifestWhenItIsCutAnywhere)
{
    const QByteArray whole = example().encoded().trimmed();
    for (qsizetype length = 0; length < whole.size(); ++length) {
        ASSERT_EQ(QuireBackupManifest::decoded(whole.first(length)), std::nullopt) << length;
    }
    EXPECT_EQ(QuireBackupManifest::decoded(whole), example());
}

TEST(QuireBackupManifest, IsNotReadFromAMissingOrAnEndlessFile)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.manifest.json"));
    EXPECT_EQ(QuireBackupManifest::read(path), std::nullopt);
    EXPECT_EQ(QuireBackupManifest::read(folder.path()), std::nullopt);
    EXPECT_EQ(QuireBackupManifest::read(QStringLiteral("/dev/zero")), std::nullopt);

    ASSERT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    EXPECT_EQ(QuireBackupManifest::read(path), std::nullopt); // and does not wait for a writer
}

TEST(QuireBackupManifest, IsNotReadWhenItIsLongerThanAnyManifest)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.manifest.json"));
    const auto put = [&path](qsizetype length) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(example().encoded().leftJustified(length, ' '));
    };
    put(65'536);
    EXPECT_EQ(QuireBackupManifest::read(path), example());
    put(65'537);
    EXPECT_EQ(QuireBackupManifest::read(path), std::nullopt);
}

TEST(QuireBackupManifest, FailsWithTypeWhereItCannotBeWritten)
{
    const QTemporaryDir folder;
    const auto failure
        = thrownBy<FileError>([&] { example().write(folder.filePath(QStringLiteral("no folder/a.manifest.json"))); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->code(), ENOENT);
}
