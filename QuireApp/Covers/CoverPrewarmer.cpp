#include "QuireApp/Covers/CoverPrewarmer.h"

#include "core/AppModel.h"
#include "QuireApp/Covers/CoverSource.h"
#include "QuireApp/Covers/CoverWork.h"

#include <algorithm>

namespace quire {

namespace {

constexpr qsizetype prewarmLimit = 32;

template<typename Record>
qsizetype storedCovers(const QList<Record> &titles)
{
    return std::count_if(titles.begin(), titles.end(), [](const Record &title) { return title.coverData.has_value(); });
}

// Up to the limit, and no title looked at beyond it.
template<typename Record>
void append(QList<ArtworkCacheEntry> &entries, const QList<Record> &titles,
    CoverSource (*sourceOf)(qint64, const std::optional<CoverBytes> &))
{
    for (const Record &title : titles) {
        if (entries.size() == prewarmLimit) {
            return;
        }
        if (title.coverData) {
            entries.append({sourceOf(title.id, title.coverData).resolvedCacheKey(), *title.coverData});
        }
    }
}

} // namespace

QString artworkCacheSignature(const AppModel &model)
{
    const QStringList parts{
        model.isReady() ? QStringLiteral("true") : QStringLiteral("false"),
        rawValue(model.selectedTab()),
        QString::number(model.books().size()),
        QString::number(storedCovers(model.books())),
        QString::number(model.audiobooks().size()),
        QString::number(storedCovers(model.audiobooks())),
    };
    return parts.join(u'-');
}

QList<ArtworkCacheEntry> prewarmEntries(const AppModel &model)
{
    QList<ArtworkCacheEntry> entries;
    append(entries, model.books(), CoverSource::ofBook);
    append(entries, model.audiobooks(), CoverSource::ofAudiobook);
    return entries;
}

CoverPrewarmer::CoverPrewarmer(AppModel &model, QObject *parent)
    : QObject(parent)
    , m_model(model)
{
    connect(&m_model, &AppModel::isReadyChanged, this, &CoverPrewarmer::update);
    connect(&m_model, &AppModel::selectedTabChanged, this, &CoverPrewarmer::update);
    connect(&m_model, &AppModel::booksChanged, this, &CoverPrewarmer::update);
    connect(&m_model, &AppModel::audiobooksChanged, this, &CoverPrewarmer::update);
    update();
}

CoverPrewarmer::~CoverPrewarmer()
{
    m_task.request_stop();
}

void CoverPrewarmer::update()
{
    const QString signature = artworkCacheSignature(m_model);
    if (signature == m_signature) {
        return;
    }
    m_signature = signature;
    m_task.request_stop();
    m_task = std::stop_source();
    if (m_model.isReady()) {
        CoverWork::startTask([entries = prewarmEntries(m_model), stop = m_task.get_token()] {
            ArtworkImageCache::shared().prewarm(entries, stop);
        });
    }
}

} // namespace quire
