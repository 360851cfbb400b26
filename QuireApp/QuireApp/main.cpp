#include "concurrency/Detach.h"
#include "images/PictureMemory.h"
#include "persistence/AppLog.h"
#include "QuireApp/QuireApp/ProgramStart.h"
#include "QuireApp/QuireApp/TerminationSignals.h"

#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QLoggingCategory>

namespace {

// At every size that it was drawn at when the program was built. A desktop that
// follows the desktop file name takes the installed one instead.
QIcon windowIcon()
{
    QIcon icon;
    const QFileInfoList drawings = QDir(QStringLiteral(":/quire/icons")).entryInfoList();
    for (const QFileInfo &drawing : drawings) {
        icon.addFile(drawing.filePath());
    }
    return icon;
}

} // namespace

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
    QGuiApplication::setWindowIcon(windowIcon());
    quire::setDetachReporter([](const QString &description) { quire::AppLog::write(description); });
    return quire::ProgramStart().run();
}
