#include "ModelTest.h"

#include "persistence/AppLog.h"
#include "records/DateParser.h"

#include <QFile>
#include <QRegularExpression>
#include <QUuid>

namespace quire {

using testing::await;
using testing::eventually;

namespace {

constexpr std::chrono::hours shortestRhythm(24); // of a schedule

} // namespace

ModelTest::ModelTest()
{
    qputenv("QUIRE_LOG_PATH", QFile::encodeName(library.file(QStringLiteral("test.log"))));
    library.open();
    library.close();
    setStored(QStringLiteral("lastBackupAt"), DateParser::iso8601(clock.now()));
}

ModelTest::~ModelTest()
{
    model.reset();
    settle();
}

void ModelTest::makeModel(bool withSession)
{
    ServiceEndpoints endpoints = ServiceEndpoints::standard();
    endpoints.goodreads = goodreads.origin();
    endpoints.audibleAPI = services.origin();
    endpoints.audibleWeb = services.origin();
    endpoints.appleBooks = services.origin();
    endpoints.openLibrary = services.origin();
    endpoints.openLibraryCovers = services.origin();
    endpoints.netlify = netlifyOrigin;
    endpoints.update = services.origin();
    AppModelDependencies dependencies{clock, network, desktop, endpoints};
    dependencies.jitter = [](std::chrono::nanoseconds maximum) { return maximum; };
    dependencies.userDefaultsFile = defaultsFile();
    dependencies.runningVersion = {.version = QStringLiteral("1.2.0"), .build = QStringLiteral("7")};
    model = std::make_unique<AppModel>(std::make_unique<LibraryStore>(clock, library.folder()),
        withSession ? std::optional(library.folder()) : std::nullopt, dependencies);
}

void ModelTest::startModel()
{
    makeModel();
    await(model->start());
    ASSERT_TRUE(model->isReady()) << (model->notice() ? qPrintable(model->notice()->message) : "no notice");
    ASSERT_TRUE(eventually([this] { return clock.sleepers() > sleepers(); })) << "no schedule runs";
    ASSERT_TRUE(eventually([this] { return !model->artworkStatus().startsWith(u"Checking"); })) << "covers take long";
}

void ModelTest::addBook(const QString &title, const QString &shelf)
{
    library.execute("INSERT INTO goodreads_books (goodreads_id, title, author, shelf, cover_data)"
                    " VALUES (?, ?, '', ?, x'00')",
        {QUuid::createUuid().toString(), title, shelf});
}

void ModelTest::addAudiobook(const QString &title, const QString &status)
{
    library.execute("INSERT INTO audible_books (asin, title, status, cover_data) VALUES (?, ?, ?, x'00')",
        {QUuid::createUuid().toString(), title, status});
}

void ModelTest::setStored(const QString &key, const QString &value)
{
    library.execute("INSERT OR REPLACE INTO settings (key, value) VALUES (?, ?)", {key, value});
}

std::optional<QString> ModelTest::stored(const QString &key) const
{
    return library.scalar("SELECT value FROM settings WHERE key = ?", {key}).optionalString();
}

void ModelTest::configureGoodreads()
{
    library.open();
    await(library.store().setSetting(QStringLiteral("goodreadsUserId"), QStringLiteral("42")));
    await(library.store().setSetting(QStringLiteral("goodreadsRssKey"), QStringLiteral("feed key")));
    library.close();
}

void ModelTest::serveFeed(const QStringList &titles)
{
    QString feed = QStringLiteral("<rss><channel>");
    for (const QString &title : titles) {
        feed += QStringLiteral("<item><book_id>%1</book_id><title>%2</title><user_shelves>read</user_shelves></item>")
                    .arg(qHash(title))
                    .arg(title);
    }
    feed += QStringLiteral("</channel></rss>");
    goodreads.routeEverythingElse(
        [bytes = feed.toUtf8()](const testing::LoopbackRequest &) { return testing::LoopbackReply::ok(bytes); });
}

QStringList ModelTest::allHistory() const
{
    QStringList lines;
    for (const SQLiteRow &row :
        library.query("SELECT job_kind, state, attempt FROM background_job_history ORDER BY id")) {
        lines.append(QStringList{row.string(QStringLiteral("job_kind"), {}), row.string(QStringLiteral("state"), {}),
            QString::number(row.intValue(QStringLiteral("attempt")).value_or(0))}
                         .join(u' '));
    }
    return lines;
}

QStringList ModelTest::backupHistory() const
{
    return allHistory().filter(QRegularExpression(QStringLiteral("^backup ")));
}

QStringList ModelTest::artworkHistory() const
{
    return allHistory().filter(QRegularExpression(QStringLiteral("^artwork ")));
}

QStringList ModelTest::history() const
{
    QStringList lines = allHistory();
    lines.removeIf([](const QString &line) { return line.startsWith(u"backup ") || line.startsWith(u"artwork "); });
    return lines;
}

std::size_t ModelTest::sleepers() const
{
    return clock.sleepers(shortestRhythm);
}

std::chrono::nanoseconds ModelTest::lastPause() const
{
    auto pauses = clock.requestedSleeps();
    // A schedule begins with a sleep of no length and goes on with its rhythm.
    std::erase_if(pauses, [](std::chrono::nanoseconds pause) { return pause.count() == 0 || pause >= shortestRhythm; });
    return pauses.empty() ? std::chrono::nanoseconds(0) : pauses.back();
}

QStringList ModelTest::logLines()
{
    // The log's queue is in order: once this mark is there, all before it is.
    const QString mark = QStringLiteral("mark ") + QUuid::createUuid().toString();
    AppLog::write(mark);
    EXPECT_TRUE(eventually([&] { return readLog().contains(mark); }));
    QStringList lines = readLog();
    lines.removeIf([](const QString &line) { return line.startsWith(u"mark "); });
    return lines;
}

QStringList ModelTest::readLog() const
{
    QFile file(library.file(QStringLiteral("test.log")));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (QString &line : lines) {
        // The further lines of a message have no date.
        line = line.startsWith(u'[') ? line.section(QStringLiteral("] "), 1) : line;
    }
    return lines;
}

QStringList ModelTest::titlesShown() const
{
    QStringList titles;
    for (const Book &book : model->filteredBooks()) {
        titles.append(book.title);
    }
    return titles;
}

void ModelTest::settle()
{
    QElapsedTimer time;
    time.start();
    eventually([&time] { return time.hasExpired(50); });
}

} // namespace quire
