// What the sidebar, the library and the menus show of the model, in the words
// and types of the views: lists with roles, finished texts, flags. It holds no
// state of its own.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/ViewModels/CatalogListModel.h"
#include "QuireApp/ViewModels/ChoiceListModel.h"
#include "QuireApp/ViewModels/LibraryListModel.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quire {

class AppModel;

class LibraryViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    // The library is open: what changes it can be offered.
    Q_PROPERTY(bool isReady READ isReady NOTIFY isReadyChanged)

    // Choices; selections are their words.
    Q_PROPERTY(quire::ChoiceListModel *sidebarTabs READ sidebarTabs CONSTANT)
    Q_PROPERTY(quire::ChoiceListModel *menuTabs READ menuTabs CONSTANT)
    Q_PROPERTY(quire::ChoiceListModel *sidebarShelves READ sidebarShelves CONSTANT)
    Q_PROPERTY(quire::ChoiceListModel *menuShelves READ menuShelves CONSTANT)
    Q_PROPERTY(quire::ChoiceListModel *sorts READ sorts CONSTANT)
    Q_PROPERTY(QString selectedTab READ selectedTab WRITE selectTab NOTIFY selectedTabChanged)
    Q_PROPERTY(QString selectedShelf READ selectedShelf WRITE selectShelf NOTIFY selectedShelfChanged)
    Q_PROPERTY(QString selectedSort READ selectedSort WRITE selectSort NOTIFY selectedSortChanged)

    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(QString searchPrompt READ searchPrompt NOTIFY selectedTabChanged)

    // The main column.
    Q_PROPERTY(bool showsInsights READ showsInsights NOTIFY selectedTabChanged)
    Q_PROPERTY(bool showsBooks READ showsBooks NOTIFY selectedTabChanged)
    Q_PROPERTY(bool showsAudiobooks READ showsAudiobooks NOTIFY selectedTabChanged)
    Q_PROPERTY(QString heading READ heading NOTIFY headingChanged)
    Q_PROPERTY(QString countText READ countText NOTIFY headingChanged)
    Q_PROPERTY(quire::LibraryListModel *books READ books CONSTANT)
    Q_PROPERTY(quire::LibraryListModel *audiobooks READ audiobooks CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY headingChanged)
    Q_PROPERTY(QString emptyLabel READ emptyLabel NOTIFY selectedTabChanged)
    Q_PROPERTY(QString emptySymbol READ emptySymbol NOTIFY selectedTabChanged)

    // What the audiobook catalogue has, while the search field is used on the
    // audio tab.
    Q_PROPERTY(bool showsAudibleCatalog READ showsAudibleCatalog NOTIFY catalogChanged)
    Q_PROPERTY(QString foundInLibraryText READ foundInLibraryText NOTIFY headingChanged)
    Q_PROPERTY(bool isSearchingAudible READ isSearchingAudible NOTIFY catalogChanged)
    Q_PROPERTY(QString catalogMessage READ catalogMessage NOTIFY catalogChanged) // empty for none
    Q_PROPERTY(quire::CatalogListModel *catalog READ catalog CONSTANT)

    // Pages of books.
    Q_PROPERTY(bool showsPaging READ showsPaging NOTIFY pageChanged)
    Q_PROPERTY(QString pageDescription READ pageDescription NOTIFY pageChanged)
    Q_PROPERTY(bool hasPreviousPage READ hasPreviousPage NOTIFY pageChanged)
    Q_PROPERTY(bool hasNextPage READ hasNextPage NOTIFY pageChanged)

public:
    // model outlives this.
    explicit LibraryViewModel(AppModel &model, QObject *parent = nullptr);

    ChoiceListModel *sidebarTabs() { return &m_sidebarTabs; }
    ChoiceListModel *menuTabs() { return &m_menuTabs; }
    ChoiceListModel *sidebarShelves() { return &m_sidebarShelves; }
    ChoiceListModel *menuShelves() { return &m_menuShelves; }
    ChoiceListModel *sorts() { return &m_sorts; }

    // A word that is no choice is ignored.
    QString selectedTab() const;
    void selectTab(const QString &word);
    QString selectedShelf() const;
    void selectShelf(const QString &word);
    QString selectedSort() const;
    void selectSort(const QString &word);

    QString searchText() const;
    void setSearchText(const QString &text);
    QString searchPrompt() const;

    bool showsInsights() const;
    bool showsBooks() const;
    bool showsAudiobooks() const;
    QString heading() const;
    QString countText() const;
    LibraryListModel *books() { return &m_books; }
    LibraryListModel *audiobooks() { return &m_audiobooks; }
    bool isEmpty() const;
    bool isReady() const;
    QString emptyLabel() const;
    QString emptySymbol() const;

    bool showsAudibleCatalog() const;
    QString foundInLibraryText() const;
    bool isSearchingAudible() const;
    QString catalogMessage() const;
    CatalogListModel *catalog() { return &m_catalog; }
    // Adds a result of the catalogue. status: its word.
    Q_INVOKABLE void addCatalogResult(int row, const QString &status);

    bool showsPaging() const;
    QString pageDescription() const;
    bool hasPreviousPage() const;
    bool hasNextPage() const;
    Q_INVOKABLE void showPreviousPage();
    Q_INVOKABLE void showNextPage();

    // Makes the title of that row id the selected one.
    Q_INVOKABLE void openBook(qint64 id);
    Q_INVOKABLE void openAudiobook(qint64 id);

    // Hides the book of that row id, or restores it.
    Q_INVOKABLE void setBookHidden(qint64 id, bool hidden);

Q_SIGNALS:
    void selectedTabChanged();
    void selectedShelfChanged();
    void selectedSortChanged();
    void searchTextChanged();
    void headingChanged();
    void isReadyChanged();
    void pageChanged();
    void catalogChanged();

private:
    void updateTabs();
    void updateShelves();
    void updateBooks();
    void updateAudiobooks();
    qint64 shownCount() const;

    AppModel &m_model;
    ChoiceListModel m_sidebarTabs;
    ChoiceListModel m_menuTabs;
    ChoiceListModel m_sidebarShelves;
    ChoiceListModel m_menuShelves;
    ChoiceListModel m_sorts;
    LibraryListModel m_books; // one page
    LibraryListModel m_audiobooks;
    CatalogListModel m_catalog;
};

} // namespace quire
