#include "core/AppModel.h"

#include "core/LaunchCacheWriter.h"
#include "core/LibraryIndex.h"
#include "persistence/LibraryStore.h"
#include "reliability/QuireBackgroundWorkCoordinator.h"

namespace quire {

AppModel::AppModel(std::unique_ptr<LibraryStore> store, const std::optional<QString> &launchCacheDirectory,
    AppModelDependencies dependencies, QObject *parent)
    : QObject(parent)
    , m_dependencies(std::move(dependencies))
    , m_updateService(m_dependencies.clock, m_dependencies.endpoints.update, m_dependencies.runningVersion)
    , m_store(std::move(store))
    , m_workCoordinator(std::make_unique<QuireBackgroundWorkCoordinator>())
    , m_bookIndex(std::make_shared<const LibraryIndex>())
    , m_audiobookIndex(std::make_shared<const LibraryIndex>())
{
    if (launchCacheDirectory) {
        m_launchCache.emplace(*launchCacheDirectory);
        m_launchCacheWriter = std::make_unique<LaunchCacheWriter>(*m_launchCache);
        m_sessionHealth.emplace(*launchCacheDirectory + QStringLiteral("/Session State.json"));
        restoreAppearance();
    }
}

AppModel::~AppModel()
{
    m_ending.request_stop();
}

} // namespace quire
