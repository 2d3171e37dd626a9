// libFuzzer entry; see Harness.h.
#include "fuzz/Harness.h"
#include "fuzz/ProgramMutator.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzRun(data, size);
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
    static const std::vector<std::string> operators = OperatorNames(MakeLibraryDialect);
    return MutateProgram(data, size, maxSize, seed, operators);
}
