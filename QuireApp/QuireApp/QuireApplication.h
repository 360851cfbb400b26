// QuireApplication puts the program together: the one model, the delegate that
// ends the program, the views, and what the views ask of the desktop. The window
// is there before it, and is given the views.
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
#include <QQmlEngine>
#include <QUrl>

#include <memory>

class QQuickItem;

namespace quire {

class MainWindow;

class QuireApplication final : public QObject
{
    Q_OBJECT

public:
    // Gives `theme` what the reader had chosen when the program last ran. Nothing
    // is known of a first run.
    static void restoreLook(Theme &theme);

    // Lets `engine` know the toolkit's own types. Before the event loop runs: a
    // screen reader may ask for the window as soon as it is there, and a toolkit
    // that does not know its types by then finds no name of anything ever after.
    static void prepare(QQmlEngine &engine);

    // engine: prepared, makes the views. theme: what they are painted with. Both
    // outlive this.
    QuireApplication(QQmlEngine &engine, Theme &theme);
    ~QuireApplication() override;

    // Makes the views, shows them in `window`, which outlives this, and begins to
    // load the library behind them. Once. False when there are no views; it has
    // been said why.
    bool openViews(MainWindow &window);

    ShellViewModel &shell() { return m_shell; }

    // Asks the delegate, and ends the event loop now or when the library is
    // closed. Any number of times.
    void quit();

protected:
    // Quit requests of the desktop, and windows that close.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    ProgramFacts facts() const;
    AppModelDependencies dependencies();
    QCoro::Task<> startModel();
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
    Theme &m_theme;
    QQmlEngine &m_engine;
    std::unique_ptr<QQuickItem> m_views;
};

} // namespace quire
