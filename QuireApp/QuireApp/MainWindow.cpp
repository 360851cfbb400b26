#include "QuireApp/QuireApp/MainWindow.h"

#include "QuireApp/Accessibility/ButtonAccessible.h"
#include "QuireApp/QuireApp/LaunchSurfaces.h"
#include "QuireApp/Theme/Theme.h"

#include <QScreen>

#include <chrono>
#include <utility>

namespace quire {

namespace {

constexpr QSize usualSize{1180, 860};
constexpr QSize smallestSize{920, 700};
constexpr int titleBar = 40; // which the desktop adds, and tells of only once the window is there
constexpr std::chrono::milliseconds longestWaitForFrame{500};
constexpr std::chrono::milliseconds longestWaitForState{200};

} // namespace

MainWindow::MainWindow(const Theme &theme, const WindowShape &last)
    : m_surfaces(new LaunchSurfaces(theme, *contentItem()))
    , m_size(screen() ? firstSize(screen()->availableSize(), last.size) : usualSize)
    , m_comesUpMaximized(last.isMaximized)
{
    ButtonAccessible::install(); // a screen reader comes in by this window
    setObjectName(QStringLiteral("main"));
    setTitle(QStringLiteral("Quire"));
    setMinimumSize(smallestSize);
    resize(m_size);
    // Some desktops make it large first and tell that it fills the screen afterwards.
    m_resized.setSingleShot(true);
    m_resized.setInterval(longestWaitForState);
    connect(&m_resized, &QTimer::timeout, this, [this] { m_size = shape().size; });
    setColor(theme.window());
    connect(&theme, &Theme::paletteChanged, this, [this, &theme] { setColor(theme.window()); });
}

QSize MainWindow::firstSize(const QSize &room, const QSize &wish)
{
    const QSize size = wish.isEmpty() ? usualSize : wish;
    return size.boundedTo({room.width(), room.height() - titleBar}).expandedTo(smallestSize);
}

void MainWindow::present()
{
    if (m_comesUpMaximized) {
        showMaximized();
    } else {
        show();
    }
}

WindowShape MainWindow::shape() const
{
    return {.size = windowStates() == Qt::WindowNoState ? size() : m_size,
        .isMaximized = windowStates().testFlag(Qt::WindowMaximized)};
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    m_resized.start();
    QQuickWindow::resizeEvent(event);
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
