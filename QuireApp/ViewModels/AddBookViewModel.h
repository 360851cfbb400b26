// What the panel "Add Book" holds: a search of the book catalogue, and the
// fields of a title that is typed in by hand.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/ViewModels/AddTitleViewModel.h"
#include "QuireApp/ViewModels/CatalogSearch.h"
#include "QuireApp/ViewModels/ChoiceListModel.h"
#include "records/ManualBookDraft.h"

#include <QCoroTask>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quire {

// Qualified, as the QML tools know the base class by its whole name only.
class AddBookViewModel : public quire::AddTitleViewModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    Q_PROPERTY(quire::CatalogSearch *search READ search CONSTANT)
    Q_PROPERTY(quire::ChoiceListModel *shelves READ shelves CONSTANT) // reading statuses

    Q_PROPERTY(QString title MEMBER m_title NOTIFY draftChanged)
    Q_PROPERTY(QString author MEMBER m_author NOTIFY draftChanged)
    Q_PROPERTY(QString isbn MEMBER m_isbn NOTIFY draftChanged)
    Q_PROPERTY(QString pages MEMBER m_pages NOTIFY draftChanged)
    Q_PROPERTY(QString year MEMBER m_year NOTIFY draftChanged)
    Q_PROPERTY(QString summary MEMBER m_summary NOTIFY draftChanged)
    Q_PROPERTY(QString notes MEMBER m_notes NOTIFY draftChanged)
    Q_PROPERTY(QString shelf MEMBER m_shelf NOTIFY draftChanged)
    Q_PROPERTY(double rating MEMBER m_rating NOTIFY draftChanged)

    Q_PROPERTY(bool canAdd READ canAdd NOTIFY draftChanged) // the draft has what it must have

public:
    // model outlives this.
    explicit AddBookViewModel(AppModel &model, QObject *parent = nullptr);

    CatalogSearch *search() { return &m_search; }
    ChoiceListModel *shelves() { return &m_shelves; }
    bool canAdd() const;

    // Everything as it is when the panel opens.
    Q_INVOKABLE void reset();

    // Add a title; added() follows, or a notice of the model.
    // row: of results. shelf: its word.
    Q_INVOKABLE void addResult(int row, const QString &shelf);
    Q_INVOKABLE void addDraft();

Q_SIGNALS:
    void draftChanged();

private:
    QCoro::Task<qsizetype> lookUp(QString query, std::stop_token stop);
    ManualBookDraft draft() const;

    CatalogSearch m_search;
    QList<BookCatalogBook> m_found; // what results shows, in words
    ChoiceListModel m_shelves;
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
