#include "QuireApp/QuireApp/MainWindow.h"

#include "QuireApp/Accessibility/ButtonAccessible.h"
#include "QuireApp/QuireApp/LaunchSurfaces.h"
#include "QuireApp/Theme/Theme.h"

#include <QScreen>
#include <QTimer>

#include <chrono>
#include <utility>

namespace quire {

namespace {

constexpr QSize usualSize{1180, 860};
constexpr QSize smallestSize{920, 700};
constexpr int titleBar = 40; // which the desktop adds, and tells of only once the window is there
constexpr std::chrono::milliseconds longestWaitForFrame{500};

} // namespace

MainWindow::MainWindow(const Theme &theme)
    : m_surfaces(new LaunchSurfaces(theme, *contentItem()))
{
    ButtonAccessible::install(); // a screen reader comes in by this window
    setObjectName(QStringLiteral("main"));
    setTitle(QStringLiteral("Quire"));
    setMinimumSize(smallestSize);
    resize(screen() ? firstSize(screen()->availableSize()) : usualSize);
    setColor(theme.window());
    connect(&theme, &Theme::paletteChanged, this, [this, &theme] { setColor(theme.window()); });
}

QSize MainWindow::firstSize(const QSize &room)
{
    return usualSize.boundedTo({room.width(), room.height() - titleBar}).expandedTo(smallestSize);
}

void MainWindow::afterFirstFrame(std::function<void()> action)
{
    auto *timer = new QTimer(this);
    timer->setSingleShot(true);
    connect(timer, &QTimer::timeout, this, [timer, action = std::move(action)] {
        timer->deleteLater();
        action();
    });
    connect(
        this, &QQuickWindow::frameSwapped, timer, [timer] { timer->start(0); },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    timer->start(longestWaitForFrame);
}

void MainWindow::showViews(QQuickItem &views)
{
    views.setParentItem(contentItem());
    delete std::exchange(m_surfaces, nullptr);
}

} // namespace quire
