#include "reliability/QuireSessionHealth.h"

#include "files/FileError.h"
#include "records/DateParser.h"
#include "testing/TestFiles.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace quire {

namespace {

using namespace std::chrono_literals;

const Instant noon = std::chrono::sys_days(std::chrono::year(2026) / 11 / 21) + 12h;

class QuireSessionHealthTest : public ::testing::Test
{
protected:
    void put(const QByteArray &content)
    {
        QDir().mkpath(QFileInfo(path).path());
        testing::putFile(path, content);
    }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("state/Session State.json"));
    QuireSessionHealth health{path};
    QuireSessionRecord open{QUuid::createUuid(), QStringLiteral("2026-11-21T10:00:00.000Z"), std::nullopt, false};
};

TEST_F(QuireSessionHealthTest, ARecordComesBackAsItWasWritten)
{
    health.write(open);
    EXPECT_EQ(health.read(), open);
}

TEST_F(QuireSessionHealthTest, ItIsPrettyPrintedWithSortedKeysAndWithoutAbsentFields)
{
    open.sessionID = QUuid::fromString(QStringLiteral("{67c8770b-44f1-410a-ab9a-f9b5446f13ee}"));
    health.write(open);
    EXPECT_EQ(testing::bytesOf(path),
        "{\n    \"clean\": false,\n    \"openedAt\": \"2026-11-21T10:00:00.000Z\",\n"
        "    \"sessionID\": \"67C8770B-44F1-410A-AB9A-F9B5446F13EE\"\n}\n");
}

TEST_F(QuireSessionHealthTest, MarkingCleanKeepsTheSessionAndDatesItsEnd)
{
    health.write(open);
    health.markClean(noon);

    const auto record = health.read();
    ASSERT_TRUE(record);
    EXPECT_EQ(record->sessionID, open.sessionID);
    EXPECT_EQ(record->openedAt, open.openedAt);
    EXPECT_EQ(record->closedAt, QStringLiteral("2026-11-21T12:00:00.000Z"));
    EXPECT_TRUE(record->clean);
}

TEST_F(QuireSessionHealthTest, MarkingCleanMakesUpARecordThatIsLost)
{
    put("{ torn");
    health.markClean(noon);

    const auto record = health.read();
    ASSERT_TRUE(record);
    EXPECT_FALSE(record->sessionID.isNull());
    EXPECT_EQ(record->openedAt, DateParser::iso8601(noon));
    EXPECT_TRUE(record->clean);
}

TEST_F(QuireSessionHealthTest, NoFileIsNoRecord)
{
    EXPECT_EQ(health.read(), std::nullopt);
}

TEST_F(QuireSessionHealthTest, GarbageIsNoRecord)
{
    const QList<QByteArray> garbage{"", "garbage", "[]", "null", "{}", QByteArray("\0\xff\xfe", 3),
        R"({"clean": false, "openedAt": "x"})",
        R"({"clean": 0, "openedAt": "x", "sessionID": "67C8770B-44F1-410A-AB9A-F9B5446F13EE"})",
        R"({"clean": false, "openedAt": "x", "sessionID": "yesterday"})",
        R"({"clean": false, "sessionID": "67C8770B-44F1-410A-AB9A-F9B5446F13EE"})",
        R"({"clean": false, "closedAt": 5, "openedAt": "x", "sessionID": "67C8770B-44F1-410A-AB9A-F9B5446F13EE"})"};
    for (const QByteArray &bytes : garbage) {
        put(bytes);
        EXPECT_EQ(health.read(), std::nullopt) << bytes.constData();
    }
}

TEST_F(QuireSessionHealthTest, AFolderInTheFilesPlaceIsNoRecordAndCannotBeWritten)
{
    QDir().mkpath(path);
    EXPECT_EQ(health.read(), std::nullopt);
    EXPECT_THROW(health.write(open), FileError);
}

} // namespace

} // namespace quire
