// Output names, and what must hold before the first import.
#include "cli/Outputs.h"

#include <filesystem>
#include <set>

#include "cli/Text.h"

namespace fs = std::filesystem;

namespace {

bool GoesToDirectory(const Options& options) {
    if (options.files.size() > 1) return true;
    if (options.output.path.empty() || options.output.path == "-") return false;
    std::error_code ignored;
    return options.output.path.back() == '/' || fs::is_directory(options.output.path, ignored);
}

}  // namespace

std::vector<std::string> PlanOutputs(const Options& options) {
    std::vector<std::string> outputs(options.files.size());
    if (options.output.format == DrawingFormat::None) return outputs;
    if (!GoesToDirectory(options)) {
        outputs.front() = options.output.path.empty() ? "-" : options.output.path;
        return outputs;
    }
    std::set<std::string> taken;
    for (std::size_t i = 0; i < outputs.size(); ++i) {
        const std::string base = options.files[i] == "-" ? "stdin" : fs::path(options.files[i]).stem().string();
        std::string name = base;
        for (int n = 2; !taken.insert(name).second; ++n) name = base + "-" + std::to_string(n);
        outputs[i] = (fs::path(options.output.path) / (name + EndingOf(options.output.format))).string();
    }
    return outputs;
}

std::optional<int> PrepareOutputs(const Options& options, const std::vector<std::string>& outputs) {
    std::error_code error;
    if (options.output.format != DrawingFormat::None && GoesToDirectory(options)) {
        fs::create_directories(options.output.path, error);
        if (error) {
            Complain("can't make the directory " + options.output.path + ": " + error.message());
            return kExitNotWhole;
        }
    }
    std::vector<std::string> written = outputs;
    written.push_back(options.report);
    for (const std::string& output : written) {
        if (output.empty() || output == "-" || !fs::is_regular_file(output, error)) continue;
        for (const std::string& input : options.files) {
            if (!fs::equivalent(output, input, error) || error) continue;
            Complain("what is written would replace the input file " + input);
            return kExitUsage;
        }
    }
    return std::nullopt;
}
