#include "QuireApp/ViewModels/LibraryTexts.h"

#include "QuireApp/ViewModels/AbbreviatedDate.h"
#include "records/DateParser.h"

#include <QDateTime>

#include <array>
#include <chrono>

namespace quire::LibraryTexts {

namespace {

Choice tabChoice(LibraryTab tab)
{
    switch (tab) {
    case LibraryTab::Books:
        return {rawValue(tab), QStringLiteral("Books"), QStringLiteral("books.vertical")};
    case LibraryTab::Insights:
        return {rawValue(tab), QStringLiteral("Insights"), QStringLiteral("chart.bar.xaxis")};
    case LibraryTab::Audio:
        return {rawValue(tab), QStringLiteral("Audio"), QStringLiteral("headphones")};
    }
    Q_UNREACHABLE();
}

QString shelfSymbol(LibraryShelf shelf)
{
    switch (shelf) {
    case LibraryShelf::All:
        return QStringLiteral("square.grid.2x2");
    case LibraryShelf::Active:
        return QStringLiteral("book.pages");
    case LibraryShelf::ToRead:
        return QStringLiteral("arrow.right.circle");
    case LibraryShelf::Read:
        return QStringLiteral("checkmark.circle");
    case LibraryShelf::DidNotFinish:
        return QStringLiteral("xmark.circle");
    case LibraryShelf::Hidden:
        return QStringLiteral("eye.slash");
    }
    Q_UNREACHABLE();
}

Choice shelfChoice(LibraryShelf shelf, LibraryTab tab)
{
    return {rawValue(shelf), label(shelf, tab), shelfSymbol(shelf)};
}

} // namespace

QString count(qint64 count, const QLocale &locale)
{
    return locale.toString(count);
}

QString titleCount(qint64 count, const QLocale &locale)
{
    return locale.toString(count) + (count == 1 ? QStringLiteral(" title") : QStringLiteral(" titles"));
}

QString pages(const std::optional<qint64> &count)
{
    return count ? QStringLiteral("%1 pages").arg(*count) : QString();
}

QString series(const std::optional<QString> &title, const std::optional<qint64> &number)
{
    if (!title) {
        return {};
    }
    return number ? QStringLiteral("%1 #%2").arg(*title, QString::number(*number)) : *title;
}

QString viewDetails(const QString &title)
{
    return QStringLiteral("View details for ") + title;
}

QString searchPrompt(LibraryTab tab)
{
    return tab == LibraryTab::Audio ? QStringLiteral("Search library & Audible") : QStringLiteral("Search library");
}

QString emptyLabel(LibraryTab tab)
{
    return tab == LibraryTab::Audio ? QStringLiteral("No audio titles found") : QStringLiteral("No titles found");
}

QString emptySymbol(LibraryTab tab)
{
    return tab == LibraryTab::Audio ? QStringLiteral("headphones") : QStringLiteral("books.vertical");
}

QList<Choice> sidebarTabs(const SettingsSnapshot &settings)
{
    QList<Choice> choices;
    if (settings.showBooksSection) {
        choices << tabChoice(LibraryTab::Books) << tabChoice(LibraryTab::Insights);
    }
    if (settings.showAudioSection) {
        choices << tabChoice(LibraryTab::Audio);
    }
    return choices;
}

QList<Choice> menuTabs(const SettingsSnapshot &settings)
{
    QList<Choice> choices;
    if (settings.showBooksSection) {
        choices << tabChoice(LibraryTab::Books);
    }
    choices << tabChoice(LibraryTab::Insights);
    if (settings.showAudioSection) {
        choices << tabChoice(LibraryTab::Audio);
    }
    return choices;
}

QList<Choice> sidebarShelves(LibraryTab tab)
{
    constexpr std::array shelfOrder{
        LibraryShelf::All, LibraryShelf::Active, LibraryShelf::ToRead, LibraryShelf::Read, LibraryShelf::DidNotFinish};
    QList<Choice> choices;
    if (tab == LibraryTab::Insights) {
        return choices;
    }
    for (const LibraryShelf shelf : shelfOrder) {
        choices << shelfChoice(shelf, tab);
    }
    if (tab == LibraryTab::Books) {
        choices << shelfChoice(LibraryShelf::Hidden, tab);
    }
    return choices;
}

QList<Choice> menuShelves(LibraryTab tab)
{
    QList<Choice> choices;
    for (const LibraryShelf shelf : allLibraryShelves) {
        choices << shelfChoice(shelf, tab);
    }
    return choices;
}

QList<Choice> sorts()
{
    return {
        {rawValue(LibrarySort::Recent), QStringLiteral("Recent"), QString()},
        {rawValue(LibrarySort::Title), QStringLiteral("Title"), QString()},
        {rawValue(LibrarySort::Rating), QStringLiteral("Rating"), QString()},
    };
}

QList<Choice> readingStatuses()
{
    return {
        {QStringLiteral("currently-reading"), QStringLiteral("Currently Reading"), QString()},
        {QStringLiteral("read"), QStringLiteral("Read"), QString()},
        {QStringLiteral("to-read"), QStringLiteral("Want to Read"), QString()},
        {QStringLiteral("did-not-finish"), QStringLiteral("Did Not Finish"), QString()},
    };
}

QList<Choice> listeningStatuses()
{
    return {
        {QStringLiteral("reading"), QStringLiteral("Currently Listening"), QString()},
        {QStringLiteral("read"), QStringLiteral("Read"), QString()},
        {QStringLiteral("to-read"), QStringLiteral("Want to Read"), QString()},
        {QStringLiteral("did-not-finish"), QStringLiteral("Did Not Finish"), QString()},
    };
}

QString lastUpdated(const std::optional<QString> &publishLastRun, const QLocale &locale)
{
    const auto instant = DateParser::date(publishLastRun);
    if (!instant) {
        return QStringLiteral("Not published from Quire yet");
    }
    const auto sinceEpoch = std::chrono::duration_cast<std::chrono::milliseconds>(instant->time_since_epoch());
    const QDateTime moment = QDateTime::fromMSecsSinceEpoch(sinceEpoch.count());
    return QStringLiteral("Last update: %1, %2")
        .arg(abbreviatedDate(moment.date(), locale), locale.toString(moment.time(), QLocale::ShortFormat));
}

} // namespace quire::LibraryTexts
