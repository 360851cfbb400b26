// The entry that the fuzzer calls, for the target it was compiled for.

#include "fuzz/ScratchFolder.h"
#include "fuzz/Targets.h"

#include <QFile>

// What is logged on the way goes into no reader's data directory.
extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/)
{
    static const quire::fuzz::ScratchFolder data;
    qputenv("XDG_DATA_HOME", QFile::encodeName(data.path()));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size)
{
    quire::fuzz::QUIRE_FUZZ_TARGET(QByteArray(reinterpret_cast<const char *>(bytes), qsizetype(size)));
    return 0;
}
