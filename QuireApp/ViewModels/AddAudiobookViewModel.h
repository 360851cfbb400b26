// What the panel "Add Audiobook" holds: a search of the audiobook catalogue, and
// the fields of a title that is typed in by hand.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/ViewModels/AddTitleViewModel.h"
#include "QuireApp/ViewModels/CatalogSearch.h"
#include "QuireApp/ViewModels/ChoiceListModel.h"

#include <QCoroTask>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quire {

// Qualified, as the QML tools know the base class by its whole name only.
class AddAudiobookViewModel : public quire::AddTitleViewModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    Q_PROPERTY(quire::CatalogSearch *search READ search CONSTANT)
    Q_PROPERTY(quire::ChoiceListModel *statuses READ statuses CONSTANT) // listening statuses

    Q_PROPERTY(QString manualTitle MEMBER m_manualTitle NOTIFY draftChanged)
    Q_PROPERTY(QString manualAuthor MEMBER m_manualAuthor NOTIFY draftChanged)
    Q_PROPERTY(QString manualNarrator MEMBER m_manualNarrator NOTIFY draftChanged)
    Q_PROPERTY(QString manualSeries MEMBER m_manualSeries NOTIFY draftChanged)
    Q_PROPERTY(QString manualBookNumber MEMBER m_manualBookNumber NOTIFY draftChanged)
    Q_PROPERTY(QString manualSummary MEMBER m_manualSummary NOTIFY draftChanged)
    Q_PROPERTY(QString manualStatus MEMBER m_manualStatus NOTIFY draftChanged)

    Q_PROPERTY(bool canAdd READ canAdd NOTIFY draftChanged) // the draft has what it must have

public:
    // model outlives this.
    explicit AddAudiobookViewModel(AppModel &model, QObject *parent = nullptr);

    CatalogSearch *search() { return &m_search; }
    ChoiceListModel *statuses() { return &m_statuses; }
    bool canAdd() const;

    // Everything as it is when the panel opens.
    Q_INVOKABLE void reset();

    // Add a title; added() follows, or a notice of the model.
    // row: of results. status: its word.
    Q_INVOKABLE void addResult(int row, const QString &status);
    Q_INVOKABLE void addDraft();

Q_SIGNALS:
    void draftChanged();

private:
    QCoro::Task<qsizetype> lookUp(QString query, std::stop_token stop);
    AudibleCatalogBook draft() const;

    CatalogSearch m_search;
    QList<AudibleCatalogBook> m_found; // what results shows, in words
    ChoiceListModel m_statuses;
    QString m_manualTitle;
    QString m_manualAuthor;
    QString m_manualNarrator;
    QString m_manualSeries;
    QString m_manualBookNumber;
    QString m_manualSummary;
    QString m_manualStatus;
};

} // namespace quire
