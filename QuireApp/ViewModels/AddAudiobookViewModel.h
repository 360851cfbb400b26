// What the panel "Add Audiobook" holds: a search of the audiobook catalogue, and
// the fields of a title that is typed in by hand.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/ViewModels/CatalogListModel.h"
#include "QuireApp/ViewModels/CatalogSearch.h"
#include "QuireApp/ViewModels/ChoiceListModel.h"

#include <QCoroTask>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quire {

class AppModel;

class AddAudiobookViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    Q_PROPERTY(quire::CatalogSearch *search READ search CONSTANT)
    Q_PROPERTY(quire::CatalogListModel *results READ results CONSTANT)
    Q_PROPERTY(quire::ChoiceListModel *statuses READ statuses CONSTANT) // listening statuses
    Q_PROPERTY(quire::ChoiceListModel *modes READ modes CONSTANT) // "search" and "manual"
    Q_PROPERTY(bool entersManually MEMBER m_entersManually NOTIFY entersManuallyChanged)

    Q_PROPERTY(QString manualTitle MEMBER m_manualTitle NOTIFY draftChanged)
    Q_PROPERTY(QString manualAuthor MEMBER m_manualAuthor NOTIFY draftChanged)
    Q_PROPERTY(QString manualNarrator MEMBER m_manualNarrator NOTIFY draftChanged)
    Q_PROPERTY(QString manualSeries MEMBER m_manualSeries NOTIFY draftChanged)
    Q_PROPERTY(QString manualBookNumber MEMBER m_manualBookNumber NOTIFY draftChanged)
    Q_PROPERTY(QString manualSummary MEMBER m_manualSummary NOTIFY draftChanged)
    Q_PROPERTY(QString manualStatus MEMBER m_manualStatus NOTIFY draftChanged)

    Q_PROPERTY(bool isWorking READ isWorking NOTIFY workChanged) // a job runs; nothing can be added
    Q_PROPERTY(bool canAdd READ canAdd NOTIFY draftChanged) // the draft has what it must have

public:
    // model outlives this.
    explicit AddAudiobookViewModel(AppModel &model, QObject *parent = nullptr);

    CatalogSearch *search() { return &m_search; }
    CatalogListModel *results() { return &m_results; }
    ChoiceListModel *statuses() { return &m_statuses; }
    ChoiceListModel *modes() { return &m_modes; }
    bool isWorking() const;
    bool canAdd() const;

    // Everything as it is when the panel opens.
    Q_INVOKABLE void reset();

    // Add a title; added() follows when it is in the library, unless the panel was
    // opened anew meanwhile and holds other input, else a notice of the model.
    // row: of results. status: its word.
    Q_INVOKABLE void addResult(int row, const QString &status);
    Q_INVOKABLE void addDraft();

Q_SIGNALS:
    void entersManuallyChanged();
    void draftChanged();
    void workChanged();
    void added();

private:
    QCoro::Task<qsizetype> lookUp(QString query, std::stop_token stop);
    QCoro::Task<> finish(QCoro::Task<bool> adding);
    AudibleCatalogBook draft() const;

    AppModel &m_model;
    CatalogSearch m_search;
    QList<AudibleCatalogBook> m_found;
    CatalogListModel m_results; // m_found, in words
    ChoiceListModel m_statuses;
    ChoiceListModel m_modes;
    int m_opening = 0; // how often reset() was called
    bool m_entersManually = false;
    QString m_manualTitle;
    QString m_manualAuthor;
    QString m_manualNarrator;
    QString m_manualSeries;
    QString m_manualBookNumber;
    QString m_manualSummary;
    QString m_manualStatus;
};

} // namespace quire
