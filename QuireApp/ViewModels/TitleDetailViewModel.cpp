#include "QuireApp/ViewModels/TitleDetailViewModel.h"

#include "concurrency/Detach.h"
#include "core/AppModel.h"
#include "records/Url.h"

#include <QPointer>

#include <utility>

namespace quire {

TitleDetailViewModel::TitleDetailViewModel(AppModel &model, const QList<Choice> &states, QObject *parent)
    : QObject(parent)
    , m_model(model)
{
    m_states.setChoices(states);
    connect(&m_model, &AppModel::isWorkingChanged, this, &TitleDetailViewModel::workChanged);
}

bool TitleDetailViewModel::isWorking() const
{
    return m_model.isWorking();
}

void TitleDetailViewModel::beginEdits(double rating, const QString &state, const QString &notes)
{
    m_rating = rating;
    m_state = state;
    m_notes = notes;
    Q_EMIT editsChanged();
}

QUrl TitleDetailViewModel::page(const std::optional<Url> &address)
{
    if (!address) {
        return {};
    }
    const QUrl url = address->toQUrl();
    const bool isWeb = url.scheme() == u"https" || url.scheme() == u"http";
    return isWeb ? url : QUrl();
}

void TitleDetailViewModel::save()
{
    if (!std::exchange(m_isSaving, true)) {
        detach(finishSaving());
    }
}

QCoro::Task<> TitleDetailViewModel::finishSaving()
{
    const QPointer self(this);
    const auto storing = store(m_rating, m_state, m_notes);
    co_await storing; // the model has told the reader how it ended
    if (self) {
        m_isSaving = false;
    }
}

} // namespace quire
