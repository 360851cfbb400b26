#include "QuireApp/QuireApp/QuireApplication.h"

#include "concurrency/Detach.h"
#include "concurrency/InBackground.h"
#include "core/QuireLaunchCache.h"
#include "persistence/AppDirectories.h"
#include "persistence/LibraryStore.h"
#include "QuireApp/Covers/CoverWork.h"
#include "QuireApp/QuireApp/MainWindow.h"
#include "QuireApp/Theme/QuireThemePalette.h"

#include <QCoroFuture>

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQuickItem>
#include <QWindow>

namespace quire {

namespace {

WindowTraits traits(const QWindow &window)
{
    const bool isColorPanel = window.objectName() == QLatin1String("color-panel");
    return {window.objectName(), window.title(),
        isColorPanel ? WindowTraits::Kind::ColorPanel : WindowTraits::Kind::Ordinary};
}

// The file is there afterwards, empty if it was not; what cannot be made is
// for the desktop to report when it is opened.
void makeEmptyFile(const QString &path)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::NewOnly);
}

constexpr bool importsLegacyBooks = true;

// look: the settings, or what a start keeps of them.
template<typename Look>
void apply(const Look &look, Theme &theme)
{
    const CustomAccentColor accent
        = ThemePalette::accentInForce(look.usesCustomAccentColor, look.customAccentColor, look.accentColor);
    theme.setAppearance(accent, look.sidebarAppearance, look.interfaceFont);
}

} // namespace

void QuireApplication::restoreLook(Theme &theme)
{
    if (const auto look = QuireLaunchCache(AppDirectories::supportDirectory()).preferences()) {
        apply(*look, theme);
    }
}

void QuireApplication::prepare(QQmlEngine &engine)
{
    QQmlComponent(&engine).setData("import QtQuick\nItem {}", QUrl());
}

QuireApplication::QuireApplication(QQmlEngine &engine, Theme &theme)
    : m_endpoints(ServiceEndpoints::read())
    , m_model(std::make_unique<LibraryStore>(m_clock, std::nullopt, importsLegacyBooks),
          AppDirectories::supportDirectory(), dependencies())
    , m_shell(m_model, m_clock, m_desktop.alerts(), m_desktop.folderPicker(), facts())
    , m_prewarmer(m_model)
    , m_remoteCovers(m_network)
    , m_theme(theme)
    , m_engine(engine)
{
    QGuiApplication::setQuitOnLastWindowClosed(false); // the delegate decides
    qApp->installEventFilter(this);
    connect(qApp, &QGuiApplication::lastWindowClosed, this, [this] {
        if (m_appDelegate.applicationShouldTerminateAfterLastWindowClosed()) {
            quit();
        }
    });
    connect(&m_signals, &TerminationSignals::terminationRequested, this, &QuireApplication::quit);
    connect(&m_appDelegate, &QuireAppDelegate::terminationMayProceed, this, [] { QCoreApplication::exit(); });
    connect(&m_model, &AppModel::settingsChanged, this, &QuireApplication::applyAppearance);
    connect(&m_shell, &ShellViewModel::quitRequested, this, &QuireApplication::quit);
    connect(&m_shell, &ShellViewModel::logsRequested, this, [this] { detach(openLogs()); });
    connect(&m_shell, &ShellViewModel::linkRequested, this, &QuireApplication::openLink);
    applyAppearance();
    Theme::serve(m_engine, m_theme);
    RemoteCoverLoader::serve(m_engine, m_remoteCovers);
    m_engine.addImportPath(QStringLiteral(":/qt/qml"));
}

QuireApplication::~QuireApplication()
{
    CoverWork::finish();
}

bool QuireApplication::openViews(MainWindow &window)
{
    QQmlComponent component(&m_engine, QUrl(QStringLiteral("qrc:/qt/qml/Quire/MainView.qml")));
    if (component.isReady()) { // one that is not would end the program where it stands
        m_views.reset(qobject_cast<QQuickItem *>(
            component.createWithInitialProperties({{QStringLiteral("shell"), QVariant::fromValue(&m_shell)}})));
    }
    if (!m_views) {
        qCritical("Quire cannot show its window: a part of Qt is missing or does not fit.\n%s",
            qPrintable(component.errorString().trimmed()));
        return false;
    }
    window.showViews(*m_views);
    // From the event loop, so that the views are on their way to the screen.
    QMetaObject::invokeMethod(
        this, [this] { detach(startModel()); }, Qt::QueuedConnection);
    return true;
}

QCoro::Task<> QuireApplication::startModel()
{
    m_appDelegate.setModel(&m_model);
    const auto started = m_model.start();
    co_await started;
    m_model.checkForUpdatesIfNeeded();
}

ProgramFacts QuireApplication::facts() const
{
    return {
        .version = QCoreApplication::applicationVersion(),
        .build = QStringLiteral(QUIRE_BUILD),
        .helpHost = m_endpoints.help,
        .feedbackAddress = QStringLiteral(QUIRE_FEEDBACK_ADDRESS),
    };
}

AppModelDependencies QuireApplication::dependencies()
{
    return {
        .clock = m_clock,
        .network = m_network,
        .desktop = m_desktop,
        .endpoints = m_endpoints,
        .userDefaultsFile = ServiceEndpoints::userSettingsFile(),
        .runningVersion = {.version = QCoreApplication::applicationVersion(), .build = QStringLiteral(QUIRE_BUILD)},
    };
}

void QuireApplication::quit()
{
    m_shell.appearance()->finishAccentSave(); // picked a moment ago, and the library is about to close
    if (m_appDelegate.applicationShouldTerminate() == TerminateReply::Now) {
        QCoreApplication::exit();
    }
}

bool QuireApplication::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Quit && watched == qApp) {
        quit();
        return true; // the toolkit's own way would not wait for the library
    }
    if (event->type() == QEvent::Close) {
        if (const auto *window = qobject_cast<QWindow *>(watched); window && isMainWindow(traits(*window))) {
            closeCompanions(window);
        }
    }
    return QObject::eventFilter(watched, event);
}

void QuireApplication::closeCompanions(const QWindow *closing)
{
    const auto windows = QGuiApplication::allWindows();
    for (QWindow *window : windows) {
        if (window != closing && window->isVisible() && closesWithMainWindow(traits(*window))) {
            window->close();
        }
    }
}

void QuireApplication::applyAppearance()
{
    apply(m_model.settings(), m_theme);
}

void QuireApplication::openLink(const QUrl &url)
{
    static const QStringList schemes{QStringLiteral("https"), QStringLiteral("http"), QStringLiteral("mailto")};
    if (schemes.contains(url.scheme())) {
        m_desktop.open(url);
    }
}

QCoro::Task<> QuireApplication::openLogs()
{
    const QString path = AppDirectories::supportDirectory() + QStringLiteral("/quire.log");
    const auto made = inBackground([path] { makeEmptyFile(path); });
    co_await made;
    m_desktop.open(QUrl::fromLocalFile(path));
}

} // namespace quire
