// How soon the program's own window answers a reader: a letter typed into the
// search field, another section, a title opened and closed. From the deed to the
// frame that shows it, and what the thread itself worked for it. Each is done so
// many times, and the memory told before and after, which should not grow. What a frame
// takes that shows nothing new stands before them, to compare with.
//
// usage: quire_answers [titles] [rounds]

#include "bench/OwnHome.h"
#include "images/PictureMemory.h"
#include "QuireApp/QuireApp/ProgramStart.h"
#include "QuireApp/QuireApp/QuireApplication.h"
#include "QuireApp/ViewModels/ShellViewModel.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <unistd.h>
#include <utility>
#include <vector>

namespace quire {

namespace {

constexpr int openedTitles = 36; // in turns, those of a page
constexpr int warmUp = 3 * openedTitles;

using Deed = std::function<void(int round)>;

double processorTime() // of this thread, in milliseconds
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

double residentMegabytes()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    statm.open(QIODevice::ReadOnly);
    return statm.readAll().split(' ').value(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / 1e6;
}

void spin(std::chrono::milliseconds time)
{
    QElapsedTimer timer;
    timer.start();
    while (!timer.hasExpired(time.count())) {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // which only the outermost loop does
        QThread::msleep(1);
    }
}

double quantile(std::vector<double> times, double part)
{
    std::sort(times.begin(), times.end());
    return times[std::size_t(part * double(times.size() - 1))];
}

class Reader
{
public:
    Reader(QQuickWindow &window, int rounds)
        : m_window(window)
        , m_rounds(rounds)
    {
        QObject::connect(
            &window, &QQuickWindow::frameSwapped, &window, [this] { m_hasFrame = true; }, Qt::DirectConnection);
    }

    // deed: the first has the number 0; every one is shown by a frame.
    void measure(const char *name, const Deed &deed)
    {
        for (int round = 0; round < warmUp; ++round) { // makes what is made once, and fills the caches
            deed(round);
            spin(std::chrono::milliseconds(25));
        }
        spin(std::chrono::seconds(1));
        std::vector<double> waits;
        std::vector<double> works;
        const double before = residentMegabytes();
        for (int round = 1; round <= m_rounds; ++round) {
            m_hasFrame = false;
            QElapsedTimer clock;
            clock.start();
            const double begun = processorTime();
            deed(warmUp + round - 1);
            while (!m_hasFrame && !clock.hasExpired(2'000)) {
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            }
            works.push_back(processorTime() - begun);
            waits.push_back(double(clock.nsecsElapsed()) / 1e6);
            spin(std::chrono::milliseconds(25));
        }
        std::printf("%-22s %6.1f %6.1f %6.1f   %6.1f %6.1f %6.1f   %6.0f -> %.0f MB\n", name, quantile(waits, 0.5),
            quantile(waits, 0.99), quantile(waits, 1), quantile(works, 0.5), quantile(works, 0.99), quantile(works, 1),
            before, residentMegabytes());
        std::fflush(stdout);
    }

    void type(int key, const QString &text)
    {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(&m_window, &press);
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(&m_window, &release);
    }

private:
    QQuickWindow &m_window;
    int m_rounds;
    bool m_hasFrame = false;
};

QQuickItem *searchField(QQuickItem *item)
{
    if (item->inherits("QQuickTextInput") && item->isVisible()) {
        return item;
    }
    const auto children = item->childItems();
    for (QQuickItem *child : children) {
        if (QQuickItem *found = searchField(child)) {
            return found;
        }
    }
    return nullptr;
}

int measureAll(QQuickWindow &window, ShellViewModel &shell, int rounds)
{
    for (int patience = 0; patience < 300 && !shell.activity()->isReady(); ++patience) {
        spin(std::chrono::milliseconds(100));
    }
    spin(std::chrono::seconds(3));
    QQuickItem *const field = searchField(window.contentItem());
    if (!shell.activity()->isReady() || !field) {
        std::fprintf(stderr, "the library was never there\n");
        return EXIT_FAILURE;
    }
    LibraryViewModel &library = *shell.library();
    Reader reader(window, rounds);
    std::printf("%-22s %20s   %20s\n%-22s %6s %6s %6s   %6s %6s %6s   %s\n", "", "to the frame, ms", "own work, ms",
        "deed", "median", "99 %", "most", "median", "99 %", "most", "memory");

    reader.measure("a frame, nothing new", [&](int) { window.update(); });

    field->forceActiveFocus();
    // Typed letter by letter and taken back again. Every title holds the first text;
    // each letter of the second puts other cards on the whole wall, and the last none.
    const auto typeAndTakeBack = [&](const QString &words) {
        return [&reader, words](int round) {
            const int at = round % (2 * int(words.size()));
            if (at < words.size()) {
                reader.type(Qt::Key_A, words.mid(at, 1));
            } else {
                reader.type(Qt::Key_Backspace, QStringLiteral("\b"));
            }
        };
    };
    const std::pair<const char *, QString> searches[]{
        {"a letter, same wall", QStringLiteral("title")},
        {"a letter, other wall", QStringLiteral("12#")},
    };
    for (const auto &[name, words] : searches) {
        reader.measure(name, typeAndTakeBack(words));
        library.setSearchText({});
    }

    const QStringList tabs{QStringLiteral("books"), QStringLiteral("audio"), QStringLiteral("insights")};
    reader.measure("another section", [&](int round) { library.selectTab(tabs[round % tabs.size()]); });
    library.selectTab(tabs[0]);
    reader.measure("a title opened, closed", [&](int round) {
        if (round % 2 == 1) {
            library.openBook(1 + round / 2 % openedTitles);
        } else {
            shell.bookDetail()->close();
        }
    });
    return EXIT_SUCCESS;
}

} // namespace

} // namespace quire

int main(int argc, char *argv[])
{
    const int titles = argc > 1 ? QByteArray(argv[1]).toInt() : 10'000;
    const int rounds = argc > 2 ? QByteArray(argv[2]).toInt() : 1'000;
    quire::returnPictureMemory();
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND")) {
        qputenv("QT_QUICK_BACKEND", "software");
    }
    const QTemporaryDir home;
    quire::moveInto(home.path());
    QGuiApplication::setApplicationName(QStringLiteral("Quire"));
    const QGuiApplication application(argc, argv);
    quire::fillLibrary({.books = titles - titles / 10,
        .audiobooks = titles / 10,
        .selectedTab = QStringLiteral("books"),
        .coverSize = {256, 384}});

    int status = EXIT_FAILURE;
    quire::ProgramStart start;
    start.run([&](quire::QuireApplication &program) {
        QMetaObject::invokeMethod(
            &program,
            [&, running = &program] {
                status = quire::measureAll(start.window(), running->shell(), rounds);
                running->quit();
            },
            Qt::QueuedConnection);
    });
    return status;
}
