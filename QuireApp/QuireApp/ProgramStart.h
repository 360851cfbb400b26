// ProgramStart brings the program up: how the toolkit draws, then the window with
// bare surfaces in the look of the last run, then, while the reader sees it, what
// fills it.
//
// Thread: interface thread, below an application object.

#pragma once

#include "core/UserDefaults.h"
#include "QuireApp/QuireApp/MainWindow.h"
#include "QuireApp/Theme/Theme.h"

#include <QQmlEngine>

#include <functional>
#include <memory>

namespace quire {

class QuireApplication;

class ProgramStart final
{
public:
    // The window is there and not on the screen.
    ProgramStart();
    ~ProgramStart();
    Q_DISABLE_COPY_MOVE(ProgramStart)

    MainWindow &window() { return m_window; }

    // Shows the window, as large as it was left, and runs the event loop. Once.
    // filled: called from the loop when the views are in the window, before the
    // library begins to load.
    // Result: the program's exit status, a failure when there are no views.
    int run(const std::function<void(QuireApplication &)> &filled = {});

private:
    UserDefaults m_defaults;
    Theme m_theme;
    MainWindow m_window;
    QQmlEngine m_engine;
    std::unique_ptr<QuireApplication> m_application;
};

} // namespace quire
