// libFuzzer entry: a run in the complete dialect; see Harness.h.
#include "complete/CompleteDialect.h"
#include "fuzz/Harness.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzRun(data, size, []() -> std::unique_ptr<CDialect> { return std::make_unique<CCompleteDialect>(); });
    return 0;
}
