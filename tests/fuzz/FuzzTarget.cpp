// A libFuzzer entry point for one of the checks; FUZZ_CHECK names it.
#include "FuzzChecks.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray input =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (const auto fault = FuzzChecks::FUZZ_CHECK(QByteArray(input))) {
        std::fprintf(stderr, "fault: %s\n", fault->c_str());
        std::abort();
    }
    return 0;
}
