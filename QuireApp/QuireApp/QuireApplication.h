// QuireApplication puts the program together: the one model, the delegate that
// ends the program, the windows, and what the windows ask of the desktop.
//
// Thread: interface thread, below an application object.

#pragma once

#include "concurrency/SystemClock.h"
#include "core/AppModel.h"
#include "QuireApp/Covers/CoverPrewarmer.h"
#include "QuireApp/Covers/RemoteCoverLoader.h"
#include "QuireApp/QuireApp/QuireAppDelegate.h"
#include "QuireApp/QuireApp/QuireDesktop.h"
#include "QuireApp/QuireApp/TerminationSignals.h"
#include "QuireApp/Theme/Theme.h"
#include "QuireApp/ViewModels/ShellViewModel.h"
#include "sources/NetworkClient.h"
#include "sources/ServiceEndpoints.h"

#include <QObject>
#include <QQmlApplicationEngine>
#include <QUrl>

namespace quire {

class QuireApplication final : public QObject
{
    Q_OBJECT

public:
    QuireApplication();
    ~QuireApplication() override;

    // Shows the main window and begins to load the library behind it. False
    // when there is no window; the engine has said why.
    bool openMainWindow();

    // Asks the delegate, and ends the event loop now or when the library is
    // closed. Any number of times.
    void quit();

protected:
    // Quit requests of the desktop, and windows that close.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    ProgramFacts facts() const;
    AppModelDependencies dependencies();
    QCoro::Task<> startMainWindow();
    // A page or a letter. Nothing else: some links are what a service answered, and
    // the desktop would start a program for a file.
    void openLink(const QUrl &url);
    QCoro::Task<> openLogs();
    void applyAppearance();
    void closeCompanions(const QWindow *closing);

    // Construction order is ownership order: what is below uses what is above.
    SystemClock m_clock;
    ServiceEndpoints m_endpoints;
    NetworkClient m_network;
    QuireDesktop m_desktop;
    AppModel m_model;
    QuireAppDelegate m_appDelegate;
    TerminationSignals m_signals;
    ShellViewModel m_shell;
    CoverPrewarmer m_prewarmer;
    RemoteCoverLoader m_remoteCovers;
    Theme m_theme{nullptr};
    QQmlApplicationEngine m_engine;
};

} // namespace quire
