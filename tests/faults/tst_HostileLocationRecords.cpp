// The record of where the library is, torn and hostile: never a crash, and the
// default folder whenever it names no absolute one.

#include "faults/MemoryFolder.h"
#include "faults/RecordMaker.h"
#include "persistence/QuireLibraryLocation.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <functional>

using namespace quire;
using namespace quire::testing;

namespace {

struct Path
{
    QByteArray json;
    QString folder; // that it names
};

QList<Path> goodPaths()
{
    const QString home = QDir::homePath();
    const QByteArray deep = QByteArray("/Reading").repeated(900);
    return {{R"("/nowhere/Reading")", QStringLiteral("/nowhere/Reading")}, {R"("\/a\/b\/")", QStringLiteral("/a/b")},
        {R"("/a/./b//../c")", QStringLiteral("/a/c")}, {R"("/")", QStringLiteral("/")}, {R"("~")", home},
        {"\"~/Bücher\"", home + QStringLiteral("/Bücher")}, {R"("/~/a")", QStringLiteral("/~/a")},
        {R"("/\u672c\ud83d\ude00")", QStringLiteral("/本😀")},
        {R"("/100%20 %s?#\"'\\\n")", QStringLiteral("/100%20 %s?#\"'\\\n")},
        {'"' + deep + '"', QString::fromLatin1(deep)}};
}

const QByteArrayList badPaths{R"("")", R"("Reading")", R"("./a")", R"(" /a")", R"("~nobody/a")", R"("~~/a")",
    R"("file:///a")", R"("\\/a")", R"("/a\u0000b")", R"("/a\ud800")", R"("\ud800/a")", "\"/a\xff\"", "7", "true",
    "1e300", "/a", "'/a'"};

using ReadRecord = std::function<std::optional<QString>(const QString &record)>;

// What is wrong with `read` in `rounds` records.
QStringList findings(Torture &torture, int rounds, const ReadRecord &read)
{
    const MemoryFolder folder;
    const QString record = folder.filePath(QStringLiteral("Library Location.json"));
    const QList<Path> good = goodPaths();
    QStringList findings;
    for (int round = 0; round < rounds; ++round) {
        RecordMaker maker(torture);
        const Path &path = good[torture.below(int(good.size()))];
        if (torture.below(4) == 0) {
            maker.addBad("path", badPaths);
        } else {
            maker.add("path", {path.json});
        }
        const QByteArray text = maker.text();
        QFile file(record);
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
            return {QStringLiteral("the record could not be written")};
        }
        file.close();
        const auto expected = maker.mustDecode() ? std::optional(path.folder) : std::nullopt;
        const auto actual = read(record);
        if (actual != expected) {
            findings.append(QStringLiteral("“%1” and not “%2” from %3")
                                .arg(actual.value_or(QStringLiteral("nothing")),
                                    expected.value_or(QStringLiteral("nothing")), QString::fromLatin1(text.left(400))));
        }
    }
    return findings;
}

} // namespace

TEST(HostileLocationRecords, NameAFolderExactlyWhenTheyAreRecords)
{
    Torture torture("R11", "torn and hostile location records");
    const int rounds = Torture::scaled(2'000);
    torture.addFindings(findings(torture, rounds, &QuireLibraryLocation::recordedDirectory));
    torture.addRounds(rounds);
}

TEST(HostileLocationRecords, AReaderThatTakesAnyTextIsCaught)
{
    Torture torture("R11-control", "any text is a folder");
    const auto lax = [](const QString &path) -> std::optional<QString> {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            return std::nullopt;
        }
        const QJsonValue folder = QJsonDocument::fromJson(file.readAll()).object()[u"path"];
        return folder.isString() ? std::optional(QDir::cleanPath(folder.toString())) : std::nullopt;
    };
    EXPECT_FALSE(findings(torture, 300, lax).isEmpty());
}
