// libFuzzer entry: a run in the complete dialect; see Harness.h.
#include "complete/CompleteDialect.h"
#include "fuzz/Harness.h"
#include "fuzz/ProgramMutator.h"

namespace {

std::unique_ptr<CDialect> MakeComplete() { return std::make_unique<CCompleteDialect>(); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzRun(data, size, MakeComplete);
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
    static const std::vector<std::string> operators = OperatorNames(MakeComplete);
    return MutateProgram(data, size, maxSize, seed, operators);
}
