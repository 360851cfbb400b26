// Scrolls a wall of covers in the program's own window, from end to end by flicks
// at the greatest speed, and tells how long the window went without a frame and on which
// thread covers were decoded.
//
// usage: quire_wall [covers]

#include "bench/FrameTimes.h"
#include "bench/OwnHome.h"
#include "images/CoverDecoder.h"
#include "images/PictureMemory.h"
#include "QuireApp/QuireApp/ProgramStart.h"
#include "QuireApp/QuireApp/QuireApplication.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <cstdio>

namespace {

std::atomic<int> decodedOnInterface = 0;
std::atomic<int> decodedElsewhere = 0;

} // namespace

// The linker sends every call of the decoder here, see CMakeLists.txt.
QImage decoded(const QByteArray &bytes) __asm__("__real__ZN5quire12CoverDecoder9thumbnailERK10QByteArray");
QImage countedAndDecoded(const QByteArray &bytes) __asm__("__wrap__ZN5quire12CoverDecoder9thumbnailERK10QByteArray");

QImage countedAndDecoded(const QByteArray &bytes)
{
    ++(QThread::currentThread() == qApp->thread() ? decodedOnInterface : decodedElsewhere);
    return decoded(bytes);
}

namespace quire {

namespace {

constexpr double longGap = 50; // milliseconds
constexpr std::chrono::milliseconds betweenFlicks{100};

void spin(std::chrono::milliseconds time)
{
    QElapsedTimer timer;
    timer.start();
    while (!timer.hasExpired(time.count())) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, int(time.count()));
    }
}

QQuickItem *wallIn(QQuickItem *item, int covers)
{
    if (item->inherits("QQuickGridView") && item->isVisible() && item->property("count").toInt() == covers) {
        return item;
    }
    const auto children = item->childItems();
    for (QQuickItem *child : children) {
        if (QQuickItem *found = wallIn(child, covers)) {
            return found;
        }
    }
    return nullptr;
}

// Once it shows all covers, and has come to rest.
QQuickItem *wallOf(QQuickWindow &window, int covers)
{
    for (int patience = 0; patience < 300; ++patience) {
        if (QQuickItem *wall = wallIn(window.contentItem(), covers)) {
            spin(std::chrono::seconds(3));
            return wall;
        }
        spin(std::chrono::milliseconds(100));
    }
    return nullptr;
}

// Within a pixel, which is as near as a flick comes.
bool isAtEnd(const QQuickItem &wall, bool down)
{
    const auto value = [&wall](const char *name) { return wall.property(name).toReal(); };
    const qreal top = value("originY") - value("topMargin");
    const qreal bottom = value("originY") + value("contentHeight") + value("bottomMargin") - wall.height();
    return down ? value("contentY") >= bottom - 1 : value("contentY") <= top + 1;
}

void scrollThrough(QQuickWindow &window, QQuickItem &wall, bool down)
{
    constexpr qreal velocity = 2500; // pixels a second
    QTimer hand;
    QObject::connect(&hand, &QTimer::timeout, &window,
        [&] { QMetaObject::invokeMethod(&wall, "flick", Q_ARG(qreal, 0), Q_ARG(qreal, down ? -velocity : velocity)); });
    hand.start(betweenFlicks);
    while (!isAtEnd(wall, down)) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

int measure(QQuickWindow &window, int covers)
{
    QQuickItem *wall = wallOf(window, covers);
    if (!wall) {
        std::fprintf(stderr, "the wall never showed %d covers\n", covers);
        return EXIT_FAILURE;
    }
    FrameTimes times;
    QObject::connect(
        &window, &QQuickWindow::frameSwapped, &window, [&times] { times.frameShown(); }, Qt::DirectConnection);
    std::printf("%d covers, window of %d by %d, %s renderer, platform %s\n", covers, window.width(), window.height(),
        qPrintable(QQuickWindow::sceneGraphBackend()), qPrintable(QGuiApplication::platformName()));
    std::printf("%-10s %7s %8s %8s %8s %8s %11s %9s %8s %10s\n", "pass", "frames", "median", "99 %", "longest",
        "> 50 ms", "undisturbed", "own work", "decoded", "interface");
    const char *names[] = {"cold down", "warm up", "warm down"};
    for (int pass = 0; pass < 3; ++pass) {
        decodedOnInterface = 0;
        decodedElsewhere = 0;
        QElapsedTimer clock;
        clock.start();
        times.begin();
        scrollThrough(window, *wall, pass != 1);
        std::printf("%-10s %7lld %8.1f %8.1f %8.1f %8lld %11.1f %9.1f %8d %10d   in %.1f s\n", names[pass],
            static_cast<long long>(times.frames()), times.gap(0.5), times.gap(0.99), times.gap(1),
            static_cast<long long>(times.gapsLongerThan(longGap)), times.undisturbed(1), times.work(1),
            int(decodedElsewhere), int(decodedOnInterface), double(clock.elapsed()) / 1e3);
        std::fflush(stdout);
        spin(std::chrono::seconds(1));
    }
    return EXIT_SUCCESS;
}

} // namespace

} // namespace quire

int main(int argc, char *argv[])
{
    const int covers = argc > 1 ? QByteArray(argv[1]).toInt() : 2000;
    quire::returnPictureMemory();
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND")) {
        qputenv("QT_QUICK_BACKEND", "software");
    }
    const QTemporaryDir home;
    quire::moveInto(home.path());
    QGuiApplication::setApplicationName(QStringLiteral("Quire"));
    const QGuiApplication application(argc, argv);
    quire::fillLibrary({.audiobooks = covers, .selectedTab = QStringLiteral("audio")});

    int status = EXIT_FAILURE;
    quire::ProgramStart start;
    start.run([&](quire::QuireApplication &program) {
        QMetaObject::invokeMethod(
            &program,
            [&, running = &program] {
                status = quire::measure(start.window(), covers);
                running->quit();
            },
            Qt::QueuedConnection);
    });
    return status;
}
