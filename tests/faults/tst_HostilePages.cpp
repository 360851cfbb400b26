// Ten thousand hostile texts in published pages: a parser that follows the standard
// finds the texts and nothing else in them.

#include "faults/Torture.h"
#include "publishing/ReadingListRenderer.h"
#include "publishing/SampleLibraries.h"
#include "publishing/SampleTitles.h"
#include "testing/ChildProcess.h"
#include "testing/TestFiles.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace quire;
using namespace quire::testing;
using ::testing::HasSubstr;

namespace {

// What the judge says of pages, its last line apart.
class Judge
{
public:
    void add(const QString &page, const QStringList &titles, const QStringList &summaries)
    {
        const QString name = QStringLiteral("page-%1").arg(m_arguments.size() / 2);
        const QString html = m_folder.filePath(name + QStringLiteral(".html"));
        const QString expected = m_folder.filePath(name + QStringLiteral(".json"));
        putFile(html, page.toUtf8());
        const QJsonObject texts{{QStringLiteral("titles"), QJsonArray::fromStringList(titles)},
            {QStringLiteral("summaries"), QJsonArray::fromStringList(summaries)}};
        putFile(expected, QJsonDocument(texts).toJson());
        m_arguments += {html, expected};
    }

    void add(const PublishingSnapshot &snapshot)
    {
        QStringList titles;
        QStringList summaries;
        const auto addTitles = [&](const auto &records) {
            for (const auto &record : records) {
                titles.append(asPublished(record.title));
                if (record.summary) {
                    summaries.append(asPublished(*record.summary));
                }
            }
        };
        addTitles(snapshot.currentlyReading);
        addTitles(snapshot.booksRead);
        addTitles(snapshot.ratedAudiobooks);
        add(ReadingListRenderer::html(snapshot), titles, summaries);
    }

    std::string findings()
    {
        ChildProcess judge(
            QStringLiteral("/usr/bin/python3"), QStringList{QStringLiteral(QUIRE_PAGE_JUDGE)} + m_arguments);
        std::string findings;
        QByteArray last;
        while (const auto line = judge.readLine(std::chrono::minutes(5))) {
            findings += last.toStdString() + (last.isEmpty() ? "" : "\n");
            last = *line;
        }
        judge.waitUntilEnded();
        EXPECT_TRUE(judge.exitStatus()) << "the judge died";
        EXPECT_EQ(*judge.exitStatus() == 0, findings.empty()) << last.constData();
        EXPECT_THAT(last.toStdString(), HasSubstr(" pages")) << "the judge did not come to an end";
        return findings;
    }

private:
    // Text that is half of a pair of surrogates cannot be told in UTF-8.
    static QString asPublished(const QString &text) { return QString::fromUtf8(text.toUtf8()); }

    QTemporaryDir m_folder;
    QStringList m_arguments;
};

Book hostileBook(std::mt19937 &random)
{
    Book book = plainBook(hostileText(random));
    book.author = hostileText(random);
    book.summary = hostileText(random);
    book.readAt = hostileText(random);
    book.goodreadsURL = Url::parse(QStringLiteral("https://x.example/") + hostileText(random));
    return book;
}

Audiobook hostileAudiobook(std::mt19937 &random)
{
    Audiobook audiobook = plainAudiobook(hostileText(random));
    audiobook.author = hostileText(random);
    audiobook.narrator = hostileText(random);
    audiobook.series = hostileText(random);
    audiobook.summary = hostileText(random);
    audiobook.audibleURL = Url::parse(QStringLiteral("https://x.example/") + hostileText(random));
    return audiobook;
}

} // namespace

TEST(HostilePages, OfTheSampleLibrariesHoldTheirTextsAndNothingElse)
{
    Judge judge;
    judge.add(emptyLibrary());
    judge.add(smallLibrary());
    judge.add(largeLibrary(120));
    judge.add(hostileLibrary());
    EXPECT_EQ(judge.findings(), "");
}

TEST(HostilePages, OfTenThousandTextsHoldTheirTextsAndNothingElse)
{
    Torture torture("R20", "pages of hostile texts");
    Judge judge;
    constexpr int textsOfTwoTitles = 10;
    for (int left = Torture::scaled(10'000) / textsOfTwoTitles; left > 0;) {
        PublishingSnapshot snapshot;
        for (; left > 0 && snapshot.booksRead.size() < 200; --left) {
            snapshot.booksRead.append(hostileBook(torture.random()));
            snapshot.ratedAudiobooks.append(hostileAudiobook(torture.random()));
            torture.addRounds(textsOfTwoTitles);
        }
        judge.add(snapshot);
    }
    torture.addFindings(QString::fromStdString(judge.findings()).split(u'\n', Qt::SkipEmptyParts));
}

// The controls: pages that are spoiled in one place.
TEST(HostilePages, ATextThatIsNotEscapedIsFound)
{
    PublishingSnapshot snapshot;
    snapshot.booksRead = {plainBook(QStringLiteral("A & B"))};
    snapshot.booksRead.first().goodreadsURL = Url::parse(QStringLiteral("https://x.example/1"));
    const QString page = ReadingListRenderer::html(snapshot);
    const std::pair<QString, QString> spoilings[]{
        {QStringLiteral("</h3>"), QStringLiteral("<script>alert(1)</script></h3>")},
        {QStringLiteral("x.example/1"), QStringLiteral("x.example/1\" onclick=\"alert(1)")},
        {QStringLiteral("https://x.example"), QStringLiteral("javascript://x.example")},
        {QStringLiteral("</h3>"), QString()},
        {QStringLiteral("A &amp; B"), QStringLiteral("A & &copy;")},
        {QStringLiteral("A &amp; B"), QStringLiteral("A &amp; C")},
        {QStringLiteral("</article>"), QStringLiteral("</article><!-- -->")},
    };
    for (const auto &[before, after] : spoilings) {
        Judge judge;
        judge.add(QString(page).replace(before, after), {QStringLiteral("A & B")}, {});
        EXPECT_NE(judge.findings(), "") << qUtf8Printable(after);
    }
    Judge judge;
    judge.add(page, {QStringLiteral("A & B")}, {});
    EXPECT_EQ(judge.findings(), "");
}
