// How long a start takes, from before the process to a frame on the screen: the
// program with a library and its launch cache, beside an empty window of the
// same toolkit and one with a word in it. They are started in turns.
//
// usage: quire_start [titles] [runs] [busy]
//   busy: another process holds the library, which therefore does not open

#include "bench/Moments.h"
#include "bench/OwnHome.h"
#include "concurrency/SystemClock.h"
#include "persistence/AppDirectories.h"
#include "reliability/QuireLibraryLease.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <optional>

namespace quire {

namespace {

using Milliseconds = QMap<QString, QList<double>>; // by moment, one a run

void start(const QString &program, const QStringList &arguments, Milliseconds &moments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const long long begun = monotonicNanoseconds();
    process.start(QCoreApplication::applicationDirPath() + u'/' + program, arguments);
    if (!process.waitForFinished(60'000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        qFatal("%s did not end well", qPrintable(program));
    }
    const auto lines = process.readAllStandardOutput().split('\n');
    for (const QByteArray &line : lines) {
        const auto words = line.split(' ');
        if (words.size() == 2) {
            moments[QString::fromLatin1(words[0])].append(double(words[1].toLongLong() - begun) / 1e6);
        }
    }
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void print(const Milliseconds &moments, double baseline)
{
    QList<std::pair<double, QString>> rows;
    for (auto at = moments.begin(); at != moments.end(); ++at) {
        rows.append({median(at.value()), at.key()});
    }
    std::sort(rows.begin(), rows.end());
    for (const auto &[time, name] : rows) {
        const auto &all = moments[name];
        std::printf("%-20s %8.1f ms %7.2f times   best %.1f, of %lld runs\n", qPrintable(name), time, time / baseline,
            *std::min_element(all.begin(), all.end()), static_cast<long long>(all.size()));
    }
}

} // namespace

} // namespace quire

int main(int argc, char *argv[])
{
    const int titles = argc > 1 ? QByteArray(argv[1]).toInt() : 1'000;
    const int runs = argc > 2 ? QByteArray(argv[2]).toInt() : 15;
    const bool isBusy = argc > 3;
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND")) {
        qputenv("QT_QUICK_BACKEND", "software");
    }
    const QTemporaryDir home;
    quire::moveInto(home.path());
    QGuiApplication::setApplicationName(QStringLiteral("Quire"));
    const QGuiApplication application(argc, argv);
    quire::fillLibrary({.books = titles, .selectedTab = QStringLiteral("books"), .coverSize = {256, 384}});

    const QString own = QStringLiteral("quire_first_frames");
    const QString bare = QStringLiteral("quire_empty_window");
    quire::Milliseconds unmeasured; // leaves the launch cache, and what the disk holds in memory
    quire::start(own, {}, unmeasured);
    quire::start(bare, {}, unmeasured);
    const QFileInfo cache(quire::AppDirectories::supportDirectory() + QStringLiteral("/Launch Library.plist"));
    std::printf("%d titles, launch cache of %.1f MB, %s renderer\n", titles, double(cache.size()) / 1e6,
        qgetenv("QT_QUICK_BACKEND").constData());

    const quire::SystemClock clock;
    std::optional<quire::QuireLibraryLease> rival;
    if (isBusy) {
        rival.emplace(quire::AppDirectories::supportDirectory(), clock);
        rival->acquire();
    }
    quire::Milliseconds empty;
    quire::Milliseconds oneWord;
    quire::Milliseconds program;
    for (int run = 0; run < runs; ++run) {
        quire::start(bare, {}, empty);
        quire::start(bare, {QStringLiteral("Quire")}, oneWord);
        quire::start(own, {}, program);
    }
    const double baseline = quire::median(empty[QStringLiteral("frame")]);
    std::printf("empty window\n");
    quire::print(empty, baseline);
    std::printf("window with one word\n");
    quire::print(oneWord, baseline);
    std::printf("program\n");
    quire::print(program, baseline);
    return EXIT_SUCCESS;
}
