// MainWindow is the program's one main window. It comes up at once with bare
// surfaces, in the look that the last run left, and takes the views when they are
// made. Closing it is the application delegate's business.
//
// Thread: interface thread.

#pragma once

#include "core/UserDefaults.h"

#include <QQuickWindow>
#include <QTimer>

#include <functional>

namespace quire {

class LaunchSurfaces;
class Theme;

class MainWindow final : public QQuickWindow
{
    Q_OBJECT

public:
    // Not yet on the screen. theme: the look, outlives the window. last: how it was
    // left; one without a size is that of a first start.
    explicit MainWindow(const Theme &theme, const WindowShape &last = {});

    // How large it comes up where the desktop leaves so much room, without its frame.
    // wish: how large it would be; an empty one is the usual size.
    static QSize firstSize(const QSize &room, const QSize &wish = {});

    // Puts it on the screen, for the first time.
    void present();

    WindowShape shape() const; // as it is, or was before it was closed

    // Calls `action` once, from the event loop: after the first frame, or after
    // half a second on a screen that shows none (another workspace, a dark one).
    void afterFirstFrame(std::function<void()> action);

    // Puts `views` in place of the bare surfaces; they stay the caller's.
    void showViews(QQuickItem &views);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    LaunchSurfaces *m_surfaces; // below the content item; null once there are views
    QSize m_size; // where it last did not fill the screen
    QTimer m_resized;
    bool m_comesUpMaximized;
};

} // namespace quire
