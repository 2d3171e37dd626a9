// The fixture of most tests: runs a PostScript program in a machine of its own and gives back, as text, what stands
// on the operand stack, what was drawn and which boxes were shown.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "interp/Dialect.h"
#include "interp/ErrorCodes.h"
#include "platform/Window.h"

/// For RunSettings::dialect.
template <class Dialect>
std::unique_ptr<CDialect> MakeDialect() {
    return std::make_unique<Dialect>();
}

struct RunSettings {
    int hostVersion = 5;
    float mergeTolerance = 0.01f;
    bool fillOutline = true;
    /// Makes the dialect of the machine.
    std::unique_ptr<CDialect> (*dialect)() = MakeDialect<CDialect>;
    bool onDisk = false;     ///< the input is a disk file, not memory
    int blockSize = 0;       ///< of the input, bytes; 0 as the system has it
    int compileAtEntry = 2;  ///< m_nCompileAtEntry of the machine
    int patience = -1;       ///< how often the user is asked before wanting out; below 0 the user never does
};

struct RunResult {
    int result = 0;          ///< of the scan: 1 or -1; of RunFile 0, 1 or -1
    int error = PSERR_NONE;  ///< m_nError afterwards
    /// Operand stack, bottom first, separated by blanks: 7 7.0 /lit exec (str\000) [1 2] {raw tokens} <<3>> true mark
    /// null --add-- ; other types by their name in dashes, such as -file-. Reals with up to 7 digits.
    std::string stack;
    /// One line for each entity: colour, "open" or "closed", then sections: "L x,y x,y" and "B x,y x,y x,y x,y".
    /// Coordinates in host units, up to 6 significant digits.
    std::vector<std::string> entities;
    std::vector<std::string> boxes;  ///< texts of the message boxes
    std::string place;               ///< of a file: "line:offset" of what the scanner found last
    std::string tail;                ///< of a file: what did not run, "kind line:offset token", or nothing
    int dictDepth = 0;               ///< depth of the dictionary stack afterwards
    tagRunReport report;             ///< what the main window is told when a run ends
    int gstateDepth = 0;             ///< depth of the graphics state stack afterwards
    int questions = 0;               ///< how often the user was asked for the wish to stop
};

/// Runs a text as an executed string, without a file: the stack stays as the program or its error left it. An error
/// that nobody caught is the dialect's to judge, as at the end of a file.
[[nodiscard]] RunResult RunText(std::string_view program, const RunSettings& settings = {});

/// Runs the bytes as the input file of an import. The operand stack is always empty afterwards.
[[nodiscard]] RunResult RunAsFile(std::string_view bytes, const RunSettings& settings = {});

/// Writes bytes to a fresh temporary file that goes with the object.
class TempFile {
public:
    explicit TempFile(std::string_view bytes, const char* suffix = ".eps");
    ~TempFile();
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;
    [[nodiscard]] const std::string& Path() const { return m_Path; }

private:
    std::string m_Path;
};

/// One fact about a program: the stack that it leaves and the error that it ends with.
struct StackCase {
    const char* name;
    const char* program;
    const char* stack;
    int error = PSERR_NONE;
};

/// Runs each case with RunText and compares stack and error; one that succeeds once more above another object, which
/// must stay, unless its program may tell how much is on the stack. Those of the plain dialect, which the settings have
/// unless told otherwise, run in the complete one as well, and must say the same there, but for those whose name begins
/// with "departure: ": what the plain dialect does on its own, or refuses.
void CheckStacks(std::initializer_list<StackCase> cases, const RunSettings& settings = {});

/// The entities of a program joined by line ends, for one comparison.
[[nodiscard]] std::string Drawn(std::string_view program, const RunSettings& settings = {});
