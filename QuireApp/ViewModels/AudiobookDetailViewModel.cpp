#include "QuireApp/ViewModels/AudiobookDetailViewModel.h"

#include "core/AppModel.h"
#include "QuireApp/ViewModels/DetailTexts.h"
#include "QuireApp/ViewModels/LibraryTexts.h"
#include "records/Text.h"

#include <utility>

namespace quire {

AudiobookDetailViewModel::AudiobookDetailViewModel(AppModel &model, QObject *parent)
    : TitleDetailViewModel(model, LibraryTexts::listeningStatuses(), parent)
{
    connect(&model, &AppModel::selectedAudiobookChanged, this, &AudiobookDetailViewModel::follow);
    follow();
}

bool AudiobookDetailViewModel::isOpen() const
{
    return m_model.selectedAudiobook().has_value();
}

// As that of a book: fresh facts, and what the reader has typed.
void AudiobookDetailViewModel::follow()
{
    const auto &selected = m_model.selectedAudiobook();
    const bool wasOpen = std::exchange(m_wasOpen, selected.has_value());
    if (selected) {
        const bool isAnother = !wasOpen || selected->id != m_audiobook.id;
        m_audiobook = *selected;
        setPills(DetailTexts::audiobookPills(m_audiobook));
        Q_EMIT factsChanged();
        if (isAnother) {
            beginEdits(m_audiobook.userRating.value_or(0), m_audiobook.status, m_audiobook.notes);
        }
    }
    if (wasOpen != m_wasOpen) {
        Q_EMIT isOpenChanged();
    }
}

QString AudiobookDetailViewModel::summary() const
{
    return Text::trimmed(m_audiobook.summary.value_or(QString()));
}

CoverSource AudiobookDetailViewModel::cover() const
{
    return CoverSource::ofAudiobook(m_audiobook.id, m_audiobook.coverData);
}

QUrl AudiobookDetailViewModel::link() const
{
    return page(m_audiobook.audibleURL);
}

QString AudiobookDetailViewModel::narration() const
{
    return m_audiobook.narrator ? QStringLiteral("Narrated by ") + *m_audiobook.narrator : QString();
}

QString AudiobookDetailViewModel::series() const
{
    return LibraryTexts::series(m_audiobook.series, m_audiobook.bookNumber);
}

void AudiobookDetailViewModel::close()
{
    m_model.setSelectedAudiobook(std::nullopt);
}

QCoro::Task<bool> AudiobookDetailViewModel::store(double rating, QString state, QString notes)
{
    return m_model.saveAudiobook(m_audiobook.id, rating, std::move(state), std::move(notes));
}

} // namespace quire
