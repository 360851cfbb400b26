// What the panels that add a title have in common: the two ways of adding, the
// results of a catalogue, and an addition under way.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/ViewModels/CatalogListModel.h"
#include "QuireApp/ViewModels/ChoiceListModel.h"

#include <QCoroTask>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quire {

class AppModel;

class AddTitleViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    Q_PROPERTY(quire::CatalogListModel *results READ results CONSTANT)
    Q_PROPERTY(quire::ChoiceListModel *modes READ modes CONSTANT) // "search" and "manual"
    Q_PROPERTY(bool entersManually MEMBER m_entersManually NOTIFY entersManuallyChanged)
    Q_PROPERTY(bool canWork READ canWork NOTIFY workChanged) // the library is open, and no job runs

public:
    CatalogListModel *results() { return &m_results; }
    ChoiceListModel *modes() { return &m_modes; }
    bool canWork() const;

Q_SIGNALS:
    void entersManuallyChanged();
    void workChanged();
    // The title that was to be added is in the library.
    void added();

protected:
    // model outlives this. searchTitle: what the way by search is called.
    AddTitleViewModel(AppModel &model, const QString &searchTitle, QObject *parent);

    // The panel opens: it begins with the search, and an addition that is under
    // way is none of its own.
    void beginAnew();

    // added() follows unless the panel was opened anew meanwhile, and holds other
    // input.
    QCoro::Task<> finish(QCoro::Task<bool> adding);

    AppModel &m_model;
    CatalogListModel m_results;

private:
    ChoiceListModel m_modes;
    int m_opening = 0; // how often it was opened
    bool m_entersManually = false;
};

} // namespace quire
