#include "persistence/AppLog.h"

#include "persistence/AppDirectories.h"
#include "testing/Await.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <thread>
#include <vector>

using namespace quire;
using namespace quire::testing;

namespace {

class AppLogTest : public ::testing::Test
{
protected:
    AppLogTest() { logTo(file(QStringLiteral("quire.log"))); }
    ~AppLogTest() override { qputenv("QUIRE_LOG_PATH", m_former); }

    QString file(const QString &name) const { return m_folder.filePath(name); }
    void logTo(const QString &path) const { qputenv("QUIRE_LOG_PATH", QFile::encodeName(path)); }

    QByteArray content(const QString &name) const
    {
        QFile in(file(name));
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }

    // Writes, and waits until the line is there.
    void writeAndWait(const QString &message, const QString &name = QStringLiteral("quire.log")) const
    {
        AppLog::write(message);
        ASSERT_TRUE(eventually([&] { return content(name).endsWith("] " + message.toUtf8() + "\n"); }));
    }

    void fill(const QString &name, qsizetype bytes) const
    {
        QFile out(file(name));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(QByteArray(bytes, 'x'));
    }

private:
    QByteArray m_former = qgetenv("QUIRE_LOG_PATH");
    QTemporaryDir m_folder;
};

} // namespace

TEST_F(AppLogTest, ALineHasItsMomentAndTheMessageAsItStands)
{
    writeAndWait(QStringLiteral("Élan\nin two lines"));
    writeAndWait(QStringLiteral("next"));
    const QRegularExpression form(
        QStringLiteral("^\\[\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z\\] Élan\nin two lines\n"
                       "\\[[^]]+\\] next\n$"));
    EXPECT_TRUE(form.match(QString::fromUtf8(content(QStringLiteral("quire.log")))).hasMatch());
}

TEST_F(AppLogTest, ALogAboveItsLimitBecomesThePreviousOne)
{
    fill(QStringLiteral("quire.log"), 2'000'001);
    fill(QStringLiteral("quire.previous.log"), 7);
    writeAndWait(QStringLiteral("the first line"));
    EXPECT_EQ(content(QStringLiteral("quire.previous.log")).size(), 2'000'001);
    EXPECT_TRUE(content(QStringLiteral("quire.log")).startsWith('['));
    EXPECT_EQ(content(QStringLiteral("quire.log")).count('\n'), 1);
}

TEST_F(AppLogTest, ALogOfExactlyItsLimitGrowsOnce)
{
    fill(QStringLiteral("quire.log"), 2'000'000);
    writeAndWait(QStringLiteral("one more"));
    EXPECT_GT(content(QStringLiteral("quire.log")).size(), 2'000'000);
    EXPECT_FALSE(QFile::exists(file(QStringLiteral("quire.previous.log"))));
}

TEST_F(AppLogTest, ThePreviousLogLiesBesideALogOfAnyName)
{
    fill(QStringLiteral("other.txt"), 2'000'001);
    logTo(file(QStringLiteral("other.txt")));
    writeAndWait(QStringLiteral("a line"), QStringLiteral("other.txt"));
    EXPECT_EQ(content(QStringLiteral("quire.previous.log")).size(), 2'000'001);
}

TEST_F(AppLogTest, ABlankPathIsIgnored)
{
    logTo(QStringLiteral(" \n "));
    EXPECT_EQ(AppLog::path(), AppDirectories::supportDirectory() + QStringLiteral("/quire.log"));
    qunsetenv("QUIRE_LOG_PATH");
    EXPECT_EQ(AppLog::path(), AppDirectories::supportDirectory() + QStringLiteral("/quire.log"));
    logTo(QStringLiteral(" /some/where.log\n"));
    EXPECT_EQ(AppLog::path(), QStringLiteral("/some/where.log"));
}

TEST_F(AppLogTest, AMissingFolderIsCreated)
{
    logTo(file(QStringLiteral("a/b/quire.log")));
    writeAndWait(QStringLiteral("a line"), QStringLiteral("a/b/quire.log"));
}

TEST_F(AppLogTest, WhereNothingCanBeWrittenLinesAreLostInSilence)
{
    fill(QStringLiteral("file"), 1);
    for (const char *impossible : {"file/quire.log", "."}) {
        logTo(file(QString::fromLatin1(impossible)));
        AppLog::write(QStringLiteral("lost"));
    }
    // Lines are written in order: once this one is there, the others were tried.
    QDir().mkpath(file(QStringLiteral("later")));
    eventually([] { return false; }, std::chrono::milliseconds(50));
    logTo(file(QStringLiteral("later/quire.log")));
    writeAndWait(QStringLiteral("found"), QStringLiteral("later/quire.log"));
    EXPECT_EQ(content(QStringLiteral("file")), "x");
}

TEST_F(AppLogTest, LinesOfManyThreadsDoNotMix)
{
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < 50; ++i) {
                AppLog::write(QStringLiteral("thread %1 line %2 %3").arg(t).arg(i).arg(QString(200, QLatin1Char('.'))));
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    writeAndWait(QStringLiteral("the end"));
    const QRegularExpression whole(QStringLiteral("^\\[[^]]+\\] (thread \\d line \\d+ \\.{200}|the end)$"));
    const auto lines = QString::fromUtf8(content(QStringLiteral("quire.log"))).chopped(1).split(QLatin1Char('\n'));
    EXPECT_EQ(lines.size(), 201);
    for (const QString &line : lines) {
        EXPECT_TRUE(whole.match(line).hasMatch()) << qPrintable(line);
    }
}
