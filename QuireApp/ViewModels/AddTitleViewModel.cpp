#include "QuireApp/ViewModels/AddTitleViewModel.h"

#include "core/AppModel.h"

#include <QPointer>

namespace quire {

AddTitleViewModel::AddTitleViewModel(AppModel &model, const QString &searchTitle, QObject *parent)
    : QObject(parent)
    , m_model(model)
{
    connect(&m_model, &AppModel::isReadyChanged, this, &AddTitleViewModel::workChanged);
    connect(&m_model, &AppModel::isWorkingChanged, this, &AddTitleViewModel::workChanged);
    m_modes.setChoices({{QStringLiteral("search"), searchTitle, QString()},
        {QStringLiteral("manual"), QStringLiteral("Enter Manually"), QString()}});
}

bool AddTitleViewModel::canWork() const
{
    return m_model.isReady() && !m_model.isWorking();
}

void AddTitleViewModel::beginAnew()
{
    ++m_opening;
    m_entersManually = false;
    Q_EMIT entersManuallyChanged();
}

QCoro::Task<> AddTitleViewModel::finish(QCoro::Task<bool> adding)
{
    const QPointer self(this);
    const int opening = m_opening;
    const bool isAdded = co_await adding;
    if (self && isAdded && opening == m_opening) {
        Q_EMIT added();
    }
}

} // namespace quire
