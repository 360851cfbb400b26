#include "concurrency/Detach.h"
#include "images/PictureMemory.h"
#include "persistence/AppLog.h"
#include "QuireApp/QuireApp/ProgramStart.h"
#include "QuireApp/QuireApp/TerminationSignals.h"

#include <QGuiApplication>
#include <QLoggingCategory>

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
    const QGuiApplication application(argc, argv);
    quire::setDetachReporter([](const QString &description) { quire::AppLog::write(description); });
    return quire::ProgramStart().run();
}
