// What the panel "Add Book" holds: a search of the book catalogue, and the
// fields of a title that is typed in by hand.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/ViewModels/CatalogListModel.h"
#include "QuireApp/ViewModels/CatalogSearch.h"
#include "QuireApp/ViewModels/ChoiceListModel.h"
#include "records/ManualBookDraft.h"

#include <QCoroTask>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quire {

class AppModel;

class AddBookViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    Q_PROPERTY(quire::CatalogSearch *search READ search CONSTANT)
    Q_PROPERTY(quire::CatalogListModel *results READ results CONSTANT)
    Q_PROPERTY(quire::ChoiceListModel *shelves READ shelves CONSTANT) // reading statuses
    Q_PROPERTY(quire::ChoiceListModel *modes READ modes CONSTANT) // "search" and "manual"
    Q_PROPERTY(bool entersManually MEMBER m_entersManually NOTIFY entersManuallyChanged)

    Q_PROPERTY(QString title MEMBER m_title NOTIFY draftChanged)
    Q_PROPERTY(QString author MEMBER m_author NOTIFY draftChanged)
    Q_PROPERTY(QString isbn MEMBER m_isbn NOTIFY draftChanged)
    Q_PROPERTY(QString pages MEMBER m_pages NOTIFY draftChanged)
    Q_PROPERTY(QString year MEMBER m_year NOTIFY draftChanged)
    Q_PROPERTY(QString summary MEMBER m_summary NOTIFY draftChanged)
    Q_PROPERTY(QString notes MEMBER m_notes NOTIFY draftChanged)
    Q_PROPERTY(QString shelf MEMBER m_shelf NOTIFY draftChanged)
    Q_PROPERTY(double rating MEMBER m_rating NOTIFY draftChanged)

    Q_PROPERTY(bool isWorking READ isWorking NOTIFY workChanged) // a job runs; nothing can be added
    Q_PROPERTY(bool canAdd READ canAdd NOTIFY draftChanged) // the draft has what it must have

public:
    // model outlives this.
    explicit AddBookViewModel(AppModel &model, QObject *parent = nullptr);

    CatalogSearch *search() { return &m_search; }
    CatalogListModel *results() { return &m_results; }
    ChoiceListModel *shelves() { return &m_shelves; }
    ChoiceListModel *modes() { return &m_modes; }
    bool isWorking() const;
    bool canAdd() const;

    // Everything as it is when the panel opens.
    Q_INVOKABLE void reset();

    // Add a title; added() follows when it is in the library, unless the panel was
    // opened anew meanwhile and holds other input, else a notice of the model.
    // row: of results. shelf: its word.
    Q_INVOKABLE void addResult(int row, const QString &shelf);
    Q_INVOKABLE void addDraft();

Q_SIGNALS:
    void entersManuallyChanged();
    void draftChanged();
    void workChanged();
    void added();

private:
    QCoro::Task<qsizetype> lookUp(QString query, std::stop_token stop);
    QCoro::Task<> finish(QCoro::Task<bool> adding);
    ManualBookDraft draft() const;

    AppModel &m_model;
    CatalogSearch m_search;
    QList<BookCatalogBook> m_found;
    CatalogListModel m_results; // m_found, in words
    ChoiceListModel m_shelves;
    ChoiceListModel m_modes;
    int m_opening = 0; // how often reset() was called
    bool m_entersManually = false;
    QString m_title;
    QString m_author;
    QString m_isbn;
    QString m_pages;
    QString m_year;
    QString m_summary;
    QString m_notes;
    QString m_shelf;
    double m_rating = 0;
};

} // namespace quire
