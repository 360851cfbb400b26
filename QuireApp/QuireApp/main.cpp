#include "concurrency/Detach.h"
#include "images/PictureMemory.h"
#include "images/StandInFonts.h"
#include "persistence/AppLog.h"
#include "QuireApp/QuireApp/MainWindow.h"
#include "QuireApp/QuireApp/QuireApplication.h"
#include "QuireApp/QuireApp/TerminationSignals.h"
#include "QuireApp/Theme/InterfaceFonts.h"
#include "QuireApp/Theme/Theme.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QQmlEngine>
#include <QQuickStyle>
#include <QQuickWindow>

#include <cstdlib>
#include <optional>

int main(int argc, char *argv[])
{
    quire::returnPictureMemory();
    quire::ignoreWriteSignals();
    // A cover that does not decode leaves its placeholder and is not reported.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.imageio*=false"));
    QGuiApplication::setApplicationName(QStringLiteral("Quire"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Quire"));
    QGuiApplication::setApplicationVersion(QStringLiteral(QUIRE_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("quire"));
    QGuiApplication application(argc, argv);

    QQuickStyle::setStyle(QStringLiteral("Basic")); // ours is drawn on the templates
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering); // crisper at 10 to 14 pixels
    quire::StandInFonts::installAll();
    quire::InterfaceFonts::readAhead();
    quire::setDetachReporter([](const QString &description) { quire::AppLog::write(description); });

    // The window comes first; what fills it is made while the reader sees it.
    quire::Theme theme(nullptr);
    quire::QuireApplication::restoreLook(theme);
    quire::MainWindow window(theme);
    QQmlEngine engine;
    std::optional<quire::QuireApplication> quire;
    window.afterFirstFrame([&] {
        quire.emplace(engine, theme);
        if (!quire->openViews(window)) {
            QGuiApplication::exit(EXIT_FAILURE);
        }
    });
    window.show();
    quire::QuireApplication::prepare(engine);
    return QGuiApplication::exec();
}
