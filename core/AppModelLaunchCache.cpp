// What the window shows before the library is open: the look at once, the titles
// as soon as they are read.

#include "concurrency/InBackground.h"
#include "core/AppModelAssign.h"
#include "core/LaunchCacheWriter.h"
#include "core/LoadedLibrary.h"
#include "persistence/AppLog.h"
#include "persistence/QuireLibraryLocation.h"

#include <QCoroFuture>

#include <QDir>
#include <QPointer>

namespace quire {

namespace {

// The path of the library that the store will open, told without the store.
QString configuredLibrary()
{
    return QDir::cleanPath(QuireLibraryLocation::configuredDirectory() + QStringLiteral("/quire.db"));
}

QFuture<std::optional<LoadedLibrary>> readInBackground(const QuireLaunchCache &cache, const std::stop_token &stop)
{
    return inBackground([cache, stop]() -> std::optional<LoadedLibrary> {
        const auto snapshot = cache.library(configuredLibrary(), stop);
        if (!snapshot) {
            return std::nullopt;
        }
        return LoadedLibrary{snapshot->books, LibraryIndex::of(snapshot->books), snapshot->audiobooks,
            LibraryIndex::of(snapshot->audiobooks), snapshot->tags};
    });
}

} // namespace

void AppModel::restoreAppearance()
{
    const auto preferences = m_launchCache ? m_launchCache->preferences() : std::nullopt;
    if (!preferences) {
        return;
    }
    SettingsSnapshot settings = m_settings;
    settings.sidebarAppearance = preferences->sidebarAppearance;
    settings.interfaceFont = preferences->interfaceFont;
    settings.accentColor = preferences->accentColor;
    settings.usesCustomAccentColor = preferences->usesCustomAccentColor;
    settings.customAccentColor = preferences->customAccentColor;
    settings.showBooksSection = preferences->showBooksSection;
    settings.showAudioSection = preferences->showAudioSection;
    assign(m_settings, settings, &AppModel::settingsChanged);
    setSelectedTab(preferences->selectedTab);
    m_hasRestoredSelectedTab = true;
}

void AppModel::beginLoadingLaunchCache()
{
    if (m_launchCache) {
        m_launchCacheReadTask.start([this](std::stop_token stop) { return showLaunchCache(stop); });
    }
}

QCoro::Task<> AppModel::showLaunchCache(std::stop_token stop)
{
    if (!m_launchCache) {
        co_return;
    }
    const QPointer self(this);
    const auto reading = readInBackground(*m_launchCache, stop);
    const auto cached = co_await reading;
    if (!self || stop.stop_requested()) {
        co_return;
    }
    if (m_isReady || !m_books.isEmpty() || !cached) {
        co_return; // the library itself was quicker, or there is nothing to show
    }
    assignLists(*cached);
    rebuildDerivedState();
    AppLog::write(QStringLiteral("Displayed asynchronously loaded library cache: %1 books, %2 audiobooks.")
                      .arg(m_books.size())
                      .arg(m_audiobooks.size()));
}

void AppModel::saveLaunchCache(const std::optional<QString> &databaseLocation)
{
    if (!m_launchCacheWriter) {
        return;
    }
    const QuireLaunchPreferences preferences{
        .sidebarAppearance = m_settings.sidebarAppearance,
        .interfaceFont = m_settings.interfaceFont,
        .accentColor = m_settings.accentColor,
        .usesCustomAccentColor = m_settings.usesCustomAccentColor,
        .customAccentColor = m_settings.customAccentColor,
        .showBooksSection = m_settings.showBooksSection,
        .showAudioSection = m_settings.showAudioSection,
        .selectedTab = m_selectedTab,
    };
    std::optional<QuireLibrarySnapshot> library;
    if (databaseLocation) {
        library = QuireLibrarySnapshot{
            .databasePath = QDir::cleanPath(*databaseLocation),
            .books = m_books,
            .audiobooks = m_audiobooks,
            .tags = m_tags,
        };
    }
    m_launchCacheWriter->save(preferences, std::move(library));
}

} // namespace quire
