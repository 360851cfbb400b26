// The least that a program of this toolkit can show: a window with nothing in it,
// or with one word. Tells the moment of its first frame, and ends.
//
// usage: quire_empty_window [word]

#include "bench/Moments.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include <cstdlib>

int main(int argc, char *argv[])
{
    QGuiApplication::setApplicationName(QStringLiteral("Empty"));
    const QGuiApplication application(argc, argv);
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    QQmlApplicationEngine engine;
    engine.setInitialProperties({{QStringLiteral("word"), QString::fromLocal8Bit(argc > 1 ? argv[1] : "")}});
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/EmptyWindow/EmptyWindow.qml")));
    auto *const window = qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
    if (!window) {
        return EXIT_FAILURE;
    }
    QObject::connect(
        window, &QQuickWindow::frameSwapped, window,
        [] {
            quire::tellMoment("frame");
            QCoreApplication::exit();
        },
        Qt::SingleShotConnection);
    return QGuiApplication::exec();
}
