// MainWindow is the program's one main window. It comes up at once with bare
// surfaces, in the look that the last run left, and takes the views when they are
// made. Closing it is the application delegate's business.
//
// Thread: interface thread.

#pragma once

#include <QQuickWindow>

#include <functional>

namespace quire {

class LaunchSurfaces;
class Theme;

class MainWindow final : public QQuickWindow
{
    Q_OBJECT

public:
    // Not yet on the screen. theme: the look, outlives the window.
    explicit MainWindow(const Theme &theme);

    // How large it comes up where the desktop leaves so much room, without its frame.
    static QSize firstSize(const QSize &room);

    // Calls `action` once, from the event loop: after the first frame, or after
    // half a second on a screen that shows none (another workspace, a dark one).
    void afterFirstFrame(std::function<void()> action);

    // Puts `views` in place of the bare surfaces; they stay the caller's.
    void showViews(QQuickItem &views);

private:
    LaunchSurfaces *m_surfaces; // below the content item; null once there are views
};

} // namespace quire
