#include "QuireApp/ViewModels/LibraryViewModel.h"

#include "concurrency/Detach.h"
#include "core/AppModel.h"
#include "QuireApp/ViewModels/LibraryTexts.h"

#include <algorithm>

namespace quire {

namespace {

template<typename Record>
std::optional<Record> titleWithId(const QList<Record> &titles, qint64 id)
{
    const auto found = std::find_if(titles.begin(), titles.end(), [id](const Record &title) { return title.id == id; });
    return found == titles.end() ? std::nullopt : std::optional(*found);
}

// The model has told the reader how it ended.
QCoro::Task<> finished(QCoro::Task<bool> work)
{
    co_await work;
}

} // namespace

LibraryViewModel::LibraryViewModel(AppModel &model, QObject *parent)
    : QObject(parent)
    , m_model(model)
{
    connect(&m_model, &AppModel::isReadyChanged, this, &LibraryViewModel::isReadyChanged);
    connect(&m_model, &AppModel::settingsChanged, this, &LibraryViewModel::updateTabs);
    connect(&m_model, &AppModel::selectedTabChanged, this, [this] {
        updateShelves();
        Q_EMIT selectedTabChanged();
        Q_EMIT headingChanged();
        Q_EMIT pageChanged();
        Q_EMIT catalogChanged();
    });
    connect(&m_model, &AppModel::selectedShelfChanged, this, [this] {
        Q_EMIT selectedShelfChanged();
        Q_EMIT headingChanged();
    });
    connect(&m_model, &AppModel::selectedSortChanged, this, &LibraryViewModel::selectedSortChanged);
    connect(&m_model, &AppModel::searchTextChanged, this, &LibraryViewModel::searchTextChanged);
    connect(&m_model, &AppModel::searchTextChanged, this, &LibraryViewModel::catalogChanged);
    connect(&m_model, &AppModel::isSearchingAudibleChanged, this, &LibraryViewModel::catalogChanged);
    connect(&m_model, &AppModel::audibleSearchErrorChanged, this, &LibraryViewModel::catalogChanged);
    connect(&m_model, &AppModel::audibleCatalogResultsChanged, this, [this] {
        m_catalog.show(m_model.audibleCatalogResults());
        Q_EMIT catalogChanged();
    });
    connect(&m_model, &AppModel::filteredBooksChanged, this, &LibraryViewModel::updateBooks);
    connect(&m_model, &AppModel::bookPageChanged, this, &LibraryViewModel::updateBooks);
    connect(&m_model, &AppModel::filteredAudiobooksChanged, this, &LibraryViewModel::updateAudiobooks);
    m_sorts.setChoices(LibraryTexts::sorts());
    updateTabs();
    updateShelves();
    updateBooks();
    updateAudiobooks();
}

void LibraryViewModel::updateTabs()
{
    m_sidebarTabs.setChoices(LibraryTexts::sidebarTabs(m_model.settings()));
    m_menuTabs.setChoices(LibraryTexts::menuTabs(m_model.settings()));
}

void LibraryViewModel::updateShelves()
{
    m_sidebarShelves.setChoices(LibraryTexts::sidebarShelves(m_model.selectedTab()));
    m_menuShelves.setChoices(LibraryTexts::menuShelves(m_model.selectedTab()));
}

void LibraryViewModel::updateBooks()
{
    m_books.show(m_model.paginatedBooks());
    Q_EMIT headingChanged();
    Q_EMIT pageChanged();
}

void LibraryViewModel::updateAudiobooks()
{
    m_audiobooks.show(m_model.filteredAudiobooks());
    Q_EMIT headingChanged();
}

QString LibraryViewModel::selectedTab() const
{
    return rawValue(m_model.selectedTab());
}

void LibraryViewModel::selectTab(const QString &word)
{
    if (const auto tab = fromRawValue<LibraryTab>(word)) {
        m_model.setSelectedTab(*tab);
    }
}

QString LibraryViewModel::selectedShelf() const
{
    return rawValue(m_model.selectedShelf());
}

void LibraryViewModel::selectShelf(const QString &word)
{
    if (const auto shelf = fromRawValue<LibraryShelf>(word)) {
        m_model.setSelectedShelf(*shelf);
    }
}

QString LibraryViewModel::selectedSort() const
{
    return rawValue(m_model.selectedSort());
}

void LibraryViewModel::selectSort(const QString &word)
{
    if (const auto sort = fromRawValue<LibrarySort>(word)) {
        m_model.setSelectedSort(*sort);
    }
}

QString LibraryViewModel::searchText() const
{
    return m_model.searchText();
}

void LibraryViewModel::setSearchText(const QString &text)
{
    m_model.setSearchText(text);
}

QString LibraryViewModel::searchPrompt() const
{
    return LibraryTexts::searchPrompt(m_model.selectedTab());
}

bool LibraryViewModel::showsInsights() const
{
    return m_model.selectedTab() == LibraryTab::Insights;
}

bool LibraryViewModel::showsBooks() const
{
    return m_model.selectedTab() == LibraryTab::Books;
}

bool LibraryViewModel::showsAudiobooks() const
{
    return m_model.selectedTab() == LibraryTab::Audio;
}

QString LibraryViewModel::heading() const
{
    return label(m_model.selectedShelf(), m_model.selectedTab());
}

qint64 LibraryViewModel::shownCount() const
{
    return m_model.selectedTab() == LibraryTab::Audio ? m_model.filteredAudiobooks().size()
                                                      : m_model.filteredBooks().size();
}

QString LibraryViewModel::countText() const
{
    return LibraryTexts::titleCount(shownCount());
}

bool LibraryViewModel::isReady() const
{
    return m_model.isReady();
}

bool LibraryViewModel::isEmpty() const
{
    return shownCount() == 0;
}

QString LibraryViewModel::emptyLabel() const
{
    return LibraryTexts::emptyLabel(m_model.selectedTab());
}

QString LibraryViewModel::emptySymbol() const
{
    return LibraryTexts::emptySymbol(m_model.selectedTab());
}

bool LibraryViewModel::showsAudibleCatalog() const
{
    return m_model.showsAudibleCatalog();
}

QString LibraryViewModel::foundInLibraryText() const
{
    return LibraryTexts::count(m_model.filteredAudiobooks().size());
}

bool LibraryViewModel::isSearchingAudible() const
{
    return m_model.isSearchingAudible();
}

QString LibraryViewModel::catalogMessage() const
{
    if (m_model.isSearchingAudible()) {
        return {};
    }
    if (const auto &error = m_model.audibleSearchError()) {
        return QStringLiteral("Audible search failed: ") + *error;
    }
    return m_model.audibleCatalogResults().isEmpty() ? QStringLiteral("No matching titles found on Audible.")
                                                     : QString();
}

void LibraryViewModel::addCatalogResult(int row, const QString &status)
{
    if (row >= 0 && row < m_model.audibleCatalogResults().size()) {
        detach(finished(m_model.addAudiobook(m_model.audibleCatalogResults().at(row), status)));
    }
}

bool LibraryViewModel::showsPaging() const
{
    return showsBooks() && m_model.totalBookPages() >= 2;
}

QString LibraryViewModel::pageDescription() const
{
    return m_model.bookPageDescription();
}

bool LibraryViewModel::hasPreviousPage() const
{
    return showsBooks() && m_model.bookPage() >= 2;
}

bool LibraryViewModel::hasNextPage() const
{
    return showsBooks() && m_model.bookPage() < m_model.totalBookPages();
}

void LibraryViewModel::showPreviousPage()
{
    m_model.showPreviousBookPage();
}

void LibraryViewModel::showNextPage()
{
    m_model.showNextBookPage();
}

void LibraryViewModel::openBook(qint64 id)
{
    m_model.setSelectedBook(titleWithId(m_model.books(), id));
}

void LibraryViewModel::openAudiobook(qint64 id)
{
    m_model.setSelectedAudiobook(titleWithId(m_model.audiobooks(), id));
}

void LibraryViewModel::setBookHidden(qint64 id, bool hidden)
{
    if (const auto book = titleWithId(m_model.books(), id)) {
        detach(finished(m_model.setBookHidden(*book, hidden)));
    }
}

} // namespace quire
