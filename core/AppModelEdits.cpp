// What the reader adds, hides and restores.

#include "core/AppModelAssign.h"
#include "core/LibraryFilter.h"
#include "core/ToastTimes.h"
#include "persistence/LibraryStore.h"
#include "records/Failure.h"
#include "records/Text.h"
#include "sources/ArtworkService.h"
#include "sources/CoverFinder.h"

#include <QCoroFuture>

#include <QPointer>

#include <algorithm>

namespace quire {

namespace {

QString addingLabel(const QString &title)
{
    return QStringLiteral("Adding %1…").arg(title);
}

// Where a cover may be found; nothing when there is none, or nobody to ask.
QCoro::Task<std::optional<Url>> foundCover(
    AppModelDependencies world, QString title, std::optional<QString> author, QList<Book> library)
{
    try {
        const auto finding = CoverFinder::find(world.network, world.endpoints, title, author, library, {});
        const auto cover = co_await finding;
        co_return cover ? std::optional(cover->url) : std::nullopt;
    } catch (const std::exception &) {
        co_return std::nullopt; // a title without a cover is better than no title
    }
}

// The picture at that address; nothing when it cannot be had.
QCoro::Task<std::optional<CoverBytes>> downloadedCover(AppModelDependencies world, Url address)
{
    try {
        const auto downloading = ArtworkService::artworkData(world.network, address.toQUrl(), {});
        co_return co_await downloading;
    } catch (const std::exception &) {
        co_return std::nullopt; // the artwork pass tries again
    }
}

} // namespace

bool AppModel::beginAdding(const QString &title)
{
    if (m_isWorking) {
        return false;
    }
    assign(m_isWorking, true, &AppModel::isWorkingChanged);
    assign(m_activityLabel, addingLabel(title), &AppModel::activityLabelChanged);
    return true;
}

void AppModel::endAdding()
{
    assign(m_isWorking, false, &AppModel::isWorkingChanged);
    assign(m_activityLabel, QString(), &AppModel::activityLabelChanged);
}

QCoro::Task<bool> AppModel::addBook(ManualBookDraft draft)
{
    draft.title = Text::trimmed(draft.title);
    draft.author = Text::trimmed(draft.author);
    if (draft.title.isEmpty()) {
        setNotice(AppNotice::error(QStringLiteral("Title Required"), QStringLiteral("Enter a title for this book.")));
        co_return false;
    }
    if (!beginAdding(draft.title)) {
        co_return false;
    }

    const QPointer self(this);
    if (!draft.sourceCoverURL) {
        const auto finding = foundCover(m_dependencies, draft.title, Text::nonEmptyValue(draft.author), m_books);
        draft.sourceCoverURL = co_await finding;
        if (!self) {
            co_return false;
        }
    }
    std::optional<CoverBytes> artwork;
    if (draft.sourceCoverURL) {
        const auto downloading = downloadedCover(m_dependencies, *draft.sourceCoverURL);
        artwork = co_await downloading;
    } else {
        const auto drawing = ArtworkService::generatedPlaceholder(draft.title);
        artwork = co_await drawing;
    }
    if (!self) {
        co_return false;
    }

    const auto finishing
        = finishAdding(m_store->addManualBook(draft, artwork), LibraryTab::Books, shelfSelection(draft.shelf));
    co_return co_await finishing;
}

QCoro::Task<bool> AppModel::addCatalogBook(BookCatalogBook book, QString shelf)
{
    ManualBookDraft draft;
    draft.title = book.title;
    draft.author = book.author;
    draft.isbn = book.isbn;
    draft.shelf = std::move(shelf);
    draft.numberOfPages = book.numberOfPages;
    draft.publishedYear = book.publishedYear;
    draft.sourceID = QStringLiteral("openlibrary:") + book.workID;
    draft.sourceCoverURL = book.coverURL;
    const bool isKnown = std::any_of(
        m_books.cbegin(), m_books.cend(), [&draft](const Book &known) { return known.goodreadsID == *draft.sourceID; });
    if (isKnown) {
        setNotice(AppNotice::information(
            QStringLiteral("Already in Quire"), book.title + QStringLiteral(" is already in your Books library.")));
        co_return false;
    }
    const auto adding = addBook(std::move(draft));
    co_return co_await adding;
}

QCoro::Task<bool> AppModel::addAudiobook(AudibleCatalogBook book, QString status)
{
    if (!beginAdding(book.title)) {
        co_return false;
    }

    const QPointer self(this);
    const auto finding = foundCover(m_dependencies, book.title, book.author, m_books);
    const std::optional<Url> found = co_await finding;
    if (!self) {
        co_return false;
    }
    std::optional<CoverBytes> artwork;
    // Unlike a book's, the catalogue's own cover is the second choice: it is square.
    if (const auto address = found ? found : book.coverURL) {
        const auto downloading = downloadedCover(m_dependencies, *address);
        artwork = co_await downloading;
        if (!self) {
            co_return false;
        }
    }

    const LibraryShelf shelf = status == u"reading" ? LibraryShelf::Active : LibraryShelf::Read;
    const auto finishing = finishAdding(m_store->addAudiobook(book, status, found, artwork), LibraryTab::Audio, shelf);
    co_return co_await finishing;
}

// Once the title is stored it is on screen under its shelf.
QCoro::Task<bool> AppModel::finishAdding(QFuture<qint64> storing, LibraryTab tab, LibraryShelf shelf)
{
    const QPointer self(this);
    std::optional<QString> failure;
    try {
        co_await storing;
        if (!self) {
            co_return true;
        }
        setSelectedTab(tab);
        setSelectedShelf(shelf);
        setSearchText(QString());
        const auto loading = reload();
        co_await loading;
    } catch (const std::exception &error) {
        failure = describe(error);
    }
    if (!self) {
        co_return false;
    }
    const bool isBook = tab == LibraryTab::Books;
    if (failure) {
        setNotice(AppNotice::error(
            isBook ? QStringLiteral("Book Could Not Be Added") : QStringLiteral("Audio Title Could Not Be Added"),
            *failure));
    } else {
        showToast(isBook ? QStringLiteral("Book added") : QStringLiteral("Audio title added"), ToastTimes::success);
    }
    endAdding();
    co_return !failure;
}

QCoro::Task<bool> AppModel::setBookHidden(Book book, bool hidden)
{
    const QPointer self(this);
    std::optional<QString> failure;
    try {
        const auto changing = m_store->setBookHidden(book.id, hidden);
        co_await changing;
        if (!self) {
            co_return true;
        }
        const auto loading = reload();
        co_await loading;
    } catch (const std::exception &error) {
        failure = describe(error);
    }
    if (!self) {
        co_return false;
    }
    if (failure) {
        setNotice(AppNotice::error(
            hidden ? QStringLiteral("Book Could Not Be Hidden") : QStringLiteral("Book Could Not Be Restored"),
            *failure));
        co_return false;
    }
    setSelectedBook(std::nullopt);
    showToast(
        hidden ? QStringLiteral("Book hidden") : QStringLiteral("Book restored to the library"), ToastTimes::success);
    co_return true;
}

} // namespace quire
