// libFuzzer entry; see Harness.h.
#include "fuzz/Harness.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzWriters(data, size);
    return 0;
}
