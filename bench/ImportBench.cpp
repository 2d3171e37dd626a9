// How fast files import. Every benchmark imports once before the clock runs and checks that the right
// entities came; a wrong answer fast is no result. Relies on the plug-in's sources as a static library; only
// the last benchmark starts a process.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "Programs.h"
#include "hostout/HostModel.h"
#include "interp/FilterEPS.h"
#include "lib/HostSetup.h"
#include "platform/Window.h"

extern char** environ;

namespace {

class CTemporaryFile {
public:
    explicit CTemporaryFile(const std::string& content) {
        std::string name = (std::filesystem::temp_directory_path() / "epsbench-XXXXXX").string();
        const int fd = ::mkstemp(name.data());
        if (fd >= 0) ::close(fd);
        m_Path = name;
        std::ofstream(m_Path, std::ios::binary) << content;
    }
    ~CTemporaryFile() { std::filesystem::remove(m_Path); }
    CTemporaryFile(const CTemporaryFile&) = delete;
    CTemporaryFile& operator=(const CTemporaryFile&) = delete;
    const std::string& Path() const { return m_Path; }

private:
    std::string m_Path;
};

// A host that shows nothing: an error is seen by its code.
class CQuietFrame final : public CFrameWnd {
public:
    CQuietFrame() { SetHostMainFrame(this); }
    ~CQuietFrame() override { SetHostMainFrame(nullptr); }
    int ShowMessageBox(const char*, const char*, unsigned) override { return IDOK; }
    int RunDialog(CDialog&) override { return -1; }
};

struct Answer {
    int error = 0;
    int entities = 0;
    long sections = 0;
};

Answer Import(const std::string& path) {
    const CQuietFrame frame;
    Answer answer;
    CEntGroup group;
    CFilterEPS machine(5);
    if (machine.OpenInputFile(path.c_str()) != 1) return {PSERR_IO, 0, 0};
    machine.RunFile(&group);
    machine.CloseInputFile();
    answer.error = machine.m_nError;
    for (const CEntity* entity = group.GetFirstChild(); entity != nullptr; entity = entity->m_pNext) {
        ++answer.entities;
        if (entity->GetKind() != ENT_PLINE) continue;
        const CSectionList& list = static_cast<const CEntPLine*>(entity)->m_Sections;
        for (const CSectObject* section = list.GetFirst(); section != nullptr; section = section->GetNext())
            ++answer.sections;
    }
    group.DeleteChildren();
    return answer;
}

void Importing(benchmark::State& state, Program (*make)(int)) {
    const Program program = make(static_cast<int>(state.range(0)));
    const CTemporaryFile file(program.text);
    const Answer answer = Import(file.Path());
    if (answer.error != PSERR_NONE || answer.entities != program.entities || answer.sections != program.sections) {
        const std::string wrong = "wrong answer: error " + std::to_string(answer.error) + ", " +
                                  std::to_string(answer.entities) + " entities, " + std::to_string(answer.sections) +
                                  " sections";
        state.SkipWithError(wrong.c_str());
        return;
    }
    for (auto _ : state) benchmark::DoNotOptimize(Import(file.Path()).entities);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * program.work);
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * program.text.size()));
    state.SetComplexityN(state.range(0));
}

void EmptyFileInOneProcess(benchmark::State& state) {
    Importing(state, [](int) { return Empty(); });
}

// From the start of the program to its end, with the start-up of the machine in it.
void EmptyFileStartToEnd(benchmark::State& state) {
    const CTemporaryFile file(Empty().text);
    std::string program = EPSIMPORT_PROGRAM, format = "-fnone", path = file.Path();
    char* arguments[] = {program.data(), format.data(), path.data(), nullptr};
    const auto run = [&] {
        pid_t pid = 0;
        int status = -1;
        if (::posix_spawn(&pid, arguments[0], nullptr, nullptr, arguments, environ) != 0) return false;
        return ::waitpid(pid, &status, 0) == pid && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    };
    if (!run()) return state.SkipWithError("epsimport failed");
    for (auto _ : state)
        if (!run()) return state.SkipWithError("epsimport failed");
}

// Sizes that grow tenfold show at a glance, by the fitted complexity, that nothing is quadratic.
BENCHMARK_CAPTURE(Importing, path_heavy, PathHeavy)
    ->RangeMultiplier(10)
    ->Range(1000, 1000000)
    ->Complexity()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Importing, bound_procedures, BoundProcedures)
    ->RangeMultiplier(10)
    ->Range(1000, 100000)
    ->Complexity()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Importing, arithmetic, Arithmetic)
    ->RangeMultiplier(10)
    ->Range(1000, 1000000)
    ->Complexity()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Importing, gsave_grestore, SaveStates)
    ->RangeMultiplier(10)
    ->Range(1000, 100000)
    ->Complexity()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Importing, dictionaries, Dictionaries)
    ->RangeMultiplier(10)
    ->Range(1000, 100000)
    ->Complexity()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(EmptyFileInOneProcess)->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK(EmptyFileStartToEnd)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
