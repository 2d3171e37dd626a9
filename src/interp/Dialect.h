// The dialect of the machine: what answers wherever this system refuses what the language has, or departs from it, and
// another dialect does not. The base gives the plain answers. Operators that differ are rows of tables that a dialect
// offers before the chain; the virtual functions are for decisions that stand inside shared work.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "interp/OperatorTable.h"
#include "objects/Array.h"
#include "objects/Filter.h"
#include "objects/NumberText.h"

class CFilterEPS;
class CStringElement;
struct ResourceCategory;

/// One object belongs to one machine, so that what a run leaves in it goes with the run. Functions that answer 1 or -1
/// do so as the operations of the machine: -1 with the reason in m_nError.
class CDialect {
public:
    CDialect() = default;
    CDialect(const CDialect&) = delete;
    CDialect& operator=(const CDialect&) = delete;
    virtual ~CDialect() = default;

    // What a program finds.
    /// Tables that a name is offered to before the chain: its place 0. Names that the start-up table has not become
    /// entries of systemdict, too.
    [[nodiscard]] virtual std::span<const OpTable* const> OperatorTables() const { return {}; }
    /// Called when the start-up dictionaries, the dictionary stack and the first graphics state stand.
    virtual void FinishStartup(CFilterEPS&) {}

    // The file.
    /// Moves the input to the first byte of the program, and its limit behind the last. PSERR_FORMAT when the file is
    /// none for this dialect, PSERR_IO.
    [[nodiscard]] virtual int FindProgram(CFilterEPS& m);
    /// Runs the current file, from where it stands to its end, as a program.
    [[nodiscard]] virtual int ScanFile(CFilterEPS& m);
    /// Called when the scanner has passed a comment that begins with %%EOF, if its rules make it one to be told of.
    virtual void MeetEndComment(CFilterEPS&) {}
    /// The last word on a run that ended with -1: what it answers then, and m_nError for the message box, with
    /// PSERR_NONE for none. m_Report.failure says what is known.
    [[nodiscard]] virtual int EndFailedRun(CFilterEPS&) { return -1; }

    // The other scanners, as the operations of the machine of the same names.
    [[nodiscard]] virtual int ScanBuffer(CFilterEPS& m, std::string_view text);
    [[nodiscard]] virtual int ScanToken(CFilterEPS& m, const CStringElement& source, ElementPtr& object,
                                        std::int32_t& consumed);
    [[nodiscard]] virtual int ParseProcedure(CFilterEPS& m, std::string_view text, ElementPtr& procedure);
    /// What a token says that ClassifyNumber takes for a number, and PlainNumber doesn't know. For a number without a
    /// value PSERR_SYNTAX follows.
    /// Departure: everything that is made of a number's bytes is one.
    [[nodiscard]] virtual TokenNumber NumberOf(std::string_view token) const { return ReadNumber(token); }
    /// Makes a new array a packed one. Departure: the type of this one element tells it. Copies are plain arrays, and
    /// operators that read arrays refuse it.
    virtual void Pack(CArrayElement& array) const { array.m_nType = ET_PACKEDARRAY; }

    // Errors and other ways out (docs/architecture.md, Errors).
    /// Decides on an error, which stands in m_Report.failure. running is what failed, null when it was the scanner
    /// itself. 1: it has been dealt with, and the run goes on behind what failed. -1: what runs ends.
    /// Departure: the plain dialect runs no handler, and the run ends.
    [[nodiscard]] virtual int OnError(CFilterEPS&, const CName* /*running*/) { return -1; }
    /// Asked by a loop whose procedure answered -1: whether that was an `exit` on its way to this loop, which is then
    /// done with.
    [[nodiscard]] virtual bool TakeExit(CFilterEPS&) { return false; }

    /// Called when somebody has dealt with an error or a way out by not passing it up.
    virtual void ForgetError(CFilterEPS&) {}

    // Decisions inside operators.
    /// Runs an executable object that is no name, raw token, procedure, string or operator. 0: it doesn't run.
    [[nodiscard]] virtual int ExecuteOther(CFilterEPS&, const CElement&) { return 0; }
    /// Whether `exec` and `stopped` refuse an executable file or filter.
    [[nodiscard]] virtual bool RunsFiles() const { return false; }
    /// Whether there is a filter of that name.
    [[nodiscard]] virtual bool HasFilter(std::string_view name) const;
    /// The filter of that name, which there is, over a source, with the dictionary operand or null. Null with PSERR_IO,
    /// PSERR_UNSUPPORTED.
    [[nodiscard]] virtual ElementPtr MakeFilter(CFilterEPS& m, std::string_view name, ElementPtr source,
                                                TypedPtr<CDictionary> params);
    /// Makes an operand of `setcolorspace` the colour space: an array that begins with the name of the family, or the
    /// name itself. PSERR_UNSUPPORTED for a family that is not there.
    [[nodiscard]] virtual int SetColorSpace(CFilterEPS& m, const CName* family, ElementPtr operand);
    /// The font that a name stands for where no font is defined under it, for all operators that find fonts. Null with
    /// the code set.
    /// Departure: the default font, whatever the name is.
    [[nodiscard]] virtual ElementPtr FindUndefinedFont(CFilterEPS& m, const CName* key);
    /// What the resource operators do with a category; null for one that all of them refuse.
    [[nodiscard]] virtual const ResourceCategory* FindCategory(const CName* name) const;

    // Limits.
    /// Most records of a path; what is beyond is dropped and counted.
    [[nodiscard]] virtual std::int32_t PathLimit() const;
    /// Most saves that may be active at a time, LAST_SAVE_LEVEL at most.
    [[nodiscard]] virtual std::int32_t SaveLimit() const;
};

/// The dialect of this library. Each library's root defines it: the plain one in plugin/, another one in the room of
/// that dialect.
[[nodiscard]] std::unique_ptr<CDialect> MakeLibraryDialect();
