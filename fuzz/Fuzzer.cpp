// The entry that the fuzzer calls, for the target it was compiled for.

#include "fuzz/Targets.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size)
{
    quire::fuzz::QUIRE_FUZZ_TARGET(QByteArray(reinterpret_cast<const char *>(bytes), qsizetype(size)));
    return 0;
}
