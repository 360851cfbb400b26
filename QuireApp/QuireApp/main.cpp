#include "concurrency/Detach.h"
#include "images/PictureMemory.h"
#include "images/StandInFonts.h"
#include "persistence/AppLog.h"
#include "QuireApp/QuireApp/QuireApplication.h"
#include "QuireApp/QuireApp/TerminationSignals.h"
#include "QuireApp/Theme/InterfaceFonts.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QQuickStyle>
#include <QQuickWindow>

#include <cstdlib>

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

    quire::QuireApplication quire;
    if (!quire.openMainWindow()) {
        return EXIT_FAILURE;
    }
    return QGuiApplication::exec();
}
