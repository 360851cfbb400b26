#include "reliability/QuireCloudLineage.h"

#include "files/FileError.h"
#include "testing/ResourceLimit.h"
#include "testing/TestFiles.h"
#include "testing/ThrownFailure.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <limits>

using namespace quire;
using namespace quire::testing;

namespace {

class QuireCloudLineageTest : public ::testing::Test
{
protected:
    void put(const QByteArray &content) const
    {
        QDir().mkpath(directory);
        putFile(store.recordURL(library), content);
    }

    QTemporaryDir folder;
    QString directory = folder.filePath(QStringLiteral("state/Cloud Library State"));
    QString library = QStringLiteral("/home/reader/Library/quire.db");
    QuireCloudLineageStore store{directory};
    QuireCloudLineage seen{QStringLiteral("00112233445566778899aabbccddeeff"), 41,
        QStringLiteral("ffeeddccbbaa99887766554433221100"), QStringLiteral("2026-11-21T12:00:00.000Z")};
};

} // namespace

TEST_F(QuireCloudLineageTest, ARecordComesBackAsItWasWritten)
{
    store.save(seen, library);
    EXPECT_EQ(store.read(library), seen);
    seen.generation = std::numeric_limits<qint64>::max();
    store.save(seen, library);
    EXPECT_EQ(store.read(library), seen);
    EXPECT_EQ(QDir(directory).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST_F(QuireCloudLineageTest, ItIsPrettyPrintedWithSortedKeys)
{
    store.save(seen, library);
    EXPECT_EQ(bytesOf(store.recordURL(library)),
        "{\n    \"generation\": 41,\n    \"libraryUUID\": \"00112233445566778899aabbccddeeff\",\n"
        "    \"lineageToken\": \"ffeeddccbbaa99887766554433221100\",\n"
        "    \"recordedAt\": \"2026-11-21T12:00:00.000Z\"\n}\n");
}

TEST_F(QuireCloudLineageTest, TheRecordIsNamedByTheDigestOfTheStandardisedPath)
{
    EXPECT_EQ(store.recordURL(QStringLiteral("/a/quire.db")),
        directory + QStringLiteral("/0b3e4b9621d8e406a26192881f37ea2f241bcab65aca4ab2bba6e86466a89530.json"));
    EXPECT_EQ(store.recordURL(QStringLiteral("/a/./b/..//quire.db")), store.recordURL(QStringLiteral("/a/quire.db")));
    EXPECT_NE(store.recordURL(QStringLiteral("/b/quire.db")), store.recordURL(QStringLiteral("/a/quire.db")));
}

TEST_F(QuireCloudLineageTest, EachPathHasAMemoryOfItsOwn)
{
    store.save(seen, library);
    EXPECT_EQ(store.read(QStringLiteral("/home/reader/Elsewhere/quire.db")), std::nullopt);
}

TEST_F(QuireCloudLineageTest, NoFileIsNoMemory)
{
    EXPECT_EQ(store.read(library), std::nullopt);
}

TEST_F(QuireCloudLineageTest, WhatDoesNotDecodeIsNoMemory)
{
    const QByteArray rest = R"("libraryUUID": "u", "lineageToken": "t", "recordedAt": "r")";
    for (const QByteArray &bytes : {QByteArray(), QByteArray("garbage"), QByteArray("[]"), QByteArray("null"),
             QByteArray("{}"), QByteArray("\0\xff\xfe", 3), QByteArray("{" + rest + "}"),
             QByteArray(R"({"generation": "41", )" + rest + "}"), QByteArray(R"({"generation": null, )" + rest + "}"),
             QByteArray(R"({"generation": true, )" + rest + "}"), QByteArray(R"({"generation": 1.5, )" + rest + "}"),
             QByteArray(R"({"generation": 1e40, )" + rest + "}"),
             QByteArray(R"({"generation": 9223372036854775808, )" + rest + "}"),
             QByteArray(R"({"generation": 41, )" + rest),
             QByteArray(R"({"generation": 41, "libraryUUID": 7, "lineageToken": "t", "recordedAt": "r"})"),
             QByteArray(R"({"generation": 41, "libraryUUID": "u", "recordedAt": "r"})"),
             QByteArray(R"({"generation": 41, "libraryUUID": "u", "lineageToken": "t"})"),
             QByteArray(R"({"generation": 41, )" + rest + "} and more")}) {
        put(bytes);
        EXPECT_EQ(store.read(library), std::nullopt) << bytes.constData();
    }
}

TEST_F(QuireCloudLineageTest, WhatDecodesIsAMemoryWhateverElseItSays)
{
    put(R"({"generation": 41.0, "libraryUUID": "", "lineageToken": "t", "recordedAt": "3026", "later": [1, {}]})");
    const QuireCloudLineage expected{QString(), 41, QStringLiteral("t"), QStringLiteral("3026")};
    EXPECT_EQ(store.read(library), expected);
}

TEST_F(QuireCloudLineageTest, ARecordThatCannotBeOpenedJustNowIsNotForgotten)
{
    store.save(seen, library);
    {
        const FewFiles none(0);
        EXPECT_THROW(store.read(library), FileError);
    }
    EXPECT_EQ(store.read(library), seen);
}

TEST_F(QuireCloudLineageTest, AFolderInTheRecordsPlaceIsNoMemoryAndCannotBeWritten)
{
    QDir().mkpath(store.recordURL(library));
    EXPECT_EQ(store.read(library), std::nullopt);
    EXPECT_THROW(store.save(seen, library), FileError);
}

TEST_F(QuireCloudLineageTest, AFileInTheFoldersPlaceIsAFailureOfSaving)
{
    QDir().mkpath(QFileInfo(directory).path());
    QFile file(directory);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(thrownBy<FileError>([&] { store.save(seen, library); })->path(), directory);
}

TEST_F(QuireCloudLineageTest, TheFiveFindings)
{
    const auto finding = [this](const QString &uuid, qint64 generation, const QString &token) {
        return compare({uuid, generation, token, QString()}, seen);
    };
    const QString other = QStringLiteral("other");
    for (const qint64 generation : {0, 40, 41, 42}) { // the identity comes first
        EXPECT_EQ(finding(other, generation, seen.lineageToken), LineageFinding::OtherLibrary);
    }
    for (const QString &token : {seen.lineageToken, other}) {
        EXPECT_EQ(finding(seen.libraryUUID, 40, token), LineageFinding::RolledBack);
        EXPECT_EQ(finding(seen.libraryUUID, 42, token), LineageFinding::MovedOn);
    }
    EXPECT_EQ(finding(seen.libraryUUID, 41, other), LineageFinding::Diverged);
    EXPECT_EQ(finding(seen.libraryUUID, 41, seen.lineageToken), LineageFinding::Unchanged);
}
