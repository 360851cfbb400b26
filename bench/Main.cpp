#include "images/PictureMemory.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    quire::returnPictureMemory(); // as the program does
    // Fixed, so that figures of two machines compare: plain text rules, and a
    // zone that has summer time.
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("TZ", "Europe/Oslo");
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
