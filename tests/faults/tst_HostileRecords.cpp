// The small records that Quire reads at its start, torn and hostile: never a
// crash, always the answer that the rule has for them.

#include "faults/MemoryFolder.h"
#include "faults/RecordMaker.h"
#include "faults/Torture.h"
#include "reliability/QuireCloudLineage.h"
#include "reliability/QuireSessionHealth.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <functional>

using namespace quire;
using namespace quire::testing;

namespace {

const QString library = QStringLiteral("/home/reader/quire.db");

void put(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

const QList<QByteArray> texts{R"("")", R"("00112233445566778899aabbccddeeff")", R"("\u0000\ud83d\ude00")",
    R"("“”/../")", R"("3026-01-01T00:00:00.000Z")", "\"" + QByteArray(5000, 'a') + "\""};

using ReadLineage = std::function<std::optional<QuireCloudLineage>(const QString &record)>;

// What is wrong with `read` in `rounds` records.
QStringList lineageFindings(Torture &torture, int rounds, const ReadLineage &read, const QString &record)
{
    QStringList findings;
    for (int round = 0; round < rounds; ++round) {
        RecordMaker maker(torture);
        maker.add("libraryUUID", texts);
        maker.add("lineageToken", texts);
        maker.add("recordedAt", texts);
        if (torture.below(4) == 0) {
            maker.addBad("generation",
                {"\"41\"", "true", "1.5", "-0.5", "1e300", "9223372036854775808", "NaN", "0x10", "1e-3", "--1"});
        } else {
            maker.add("generation", {"0", "41", "-1", "41.0", "4e1", "9223372036854775807", "-9223372036854775808"});
        }
        const QByteArray text = maker.text();
        put(record, text);
        if (read(record).has_value() != maker.mustDecode()) {
            findings.append(
                QStringLiteral("%1 understood: %2")
                    .arg(maker.mustDecode() ? u"must be" : u"must not be", QString::fromLatin1(text.left(400))));
        }
    }
    return findings;
}

} // namespace

TEST(HostileRecords, ALineageRecordIsUnderstoodExactlyWhenItIsOne)
{
    Torture torture("R11", "torn and hostile lineage records");
    const MemoryFolder folder;
    const QuireCloudLineageStore store(folder.path());
    const int rounds = Torture::scaled(2'000);
    torture.addFindings(lineageFindings(
        torture, rounds, [&store](const QString &) { return store.read(library); }, store.recordURL(library)));
    torture.addRounds(rounds);
}

TEST(HostileRecords, AReaderThatTakesAnyNumberIsCaught)
{
    Torture torture("R11-control", "any number is a generation");
    const MemoryFolder folder;
    const QString record = folder.filePath(QStringLiteral("record.json"));
    const auto lax = [](const QString &path) -> std::optional<QuireCloudLineage> {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            return std::nullopt;
        }
        const QJsonObject object = QJsonDocument::fromJson(file.readAll()).object();
        for (const char *key : {"libraryUUID", "lineageToken", "recordedAt"}) {
            if (!object[QLatin1String(key)].isString()) {
                return std::nullopt;
            }
        }
        return QuireCloudLineage{{}, object[u"generation"].toInteger(), {}, {}};
    };
    EXPECT_FALSE(lineageFindings(torture, 300, lax, record).isEmpty());
}

TEST(HostileRecords, ASessionRecordTellsOfACrashOnlyWhenItIsOneAndIsClosedAllTheSame)
{
    Torture torture("R11", "torn and hostile session records");
    const MemoryFolder folder;
    const QString path = folder.filePath(QStringLiteral("Session State.json"));
    const QuireSessionHealth health(path);
    const Instant now = std::chrono::sys_days(std::chrono::year(2026) / 11 / 21);
    const QByteArray id = R"("67C8770B-44F1-410A-AB9A-F9B5446F13EE")";
    for (int round = Torture::scaled(2'000); round > 0; --round) {
        RecordMaker maker(torture);
        if (torture.below(4) == 0) {
            maker.addBad("sessionID",
                {"\"\"", "\"yesterday\"", R"("{67C8770B-44F1-410A-AB9A-F9B5446F13EE}")", "7",
                    R"("67C8770B44F1410AAB9AF9B5446F13EE")", R"("67C8770B-44F1-410A-AB9A-F9B5446F13EE ")"});
        } else {
            maker.add("sessionID",
                {id, R"("67c8770b-44f1-410a-ab9a-f9b5446f13ee")", R"("00000000-0000-0000-0000-000000000000")"});
        }
        maker.add("openedAt", texts);
        maker.add("closedAt", texts, true);
        maker.add("clean", {"false"});
        put(path, maker.text());
        const auto record = health.read();
        if (record.has_value() != maker.mustDecode() || (record && record->clean)) {
            torture.addFinding(QStringLiteral("taken for something else"));
        }
        health.markClean(now);
        const auto closed = health.read();
        if (!closed || !closed->clean || closed->closedAt != QStringLiteral("2026-11-21T00:00:00.000Z")
            || (record && (closed->sessionID != record->sessionID || closed->openedAt != record->openedAt))) {
            torture.addFinding(QStringLiteral("not closed"));
        }
        torture.addRounds();
    }
}
