// The complete dialect: the language as its reference has it (PostScript Language Reference, third edition), as far
// as it matters to what is drawn. Each family of operators that differs is a table in a source of this room, offered
// before the chain; here is what stands behind the shared work of the machine.
#pragma once

#include <optional>
#include <vector>

#include "complete/ClipOperators.h"
#include "complete/DeviceOperators.h"
#include "complete/FontFaces.h"
#include "complete/ParameterOperators.h"
#include "complete/ResourceOperators.h"
#include "interp/Dialect.h"
#include "interp/FilterEPS.h"

/// Why a run of operators answers -1 without an error of its own: on its way to whom.
enum class WayOut {
    none,
    stop,  ///< to the nearest `stopped`
    exit,  ///< to the nearest loop
    quit,  ///< to the end of the run
};

struct GlyphProcedure;
struct PatternProbe;

/// Most saves at a time: a `restore` looks at each level that it leaves and all below.
inline constexpr std::int32_t MAX_SAVES = 10000;

class CCompleteDialect final : public CDialect {
public:
    ~CCompleteDialect() override;

    /// The dialect of a machine that runs this one.
    [[nodiscard]] static CCompleteDialect& Of(const CFilterEPS& m) noexcept {
        return static_cast<CCompleteDialect&>(m.Dialect());
    }

    [[nodiscard]] std::span<const OpTable* const> OperatorTables() const override;
    void FinishStartup(CFilterEPS& m) override;
    [[nodiscard]] int FindProgram(CFilterEPS& m) override;
    [[nodiscard]] int ScanFile(CFilterEPS& m) override;
    void MeetEndComment(CFilterEPS&) override { m_bMetEnd = true; }
    [[nodiscard]] int EndFailedRun(CFilterEPS& m) override;
    [[nodiscard]] int OnError(CFilterEPS& m, const CName* running) override;
    [[nodiscard]] bool TakeExit(CFilterEPS&) override { return Take(WayOut::exit); }
    void ForgetError(CFilterEPS&) override { m_WayOut = WayOut::none; }
    [[nodiscard]] int SetColorSpace(CFilterEPS& m, const CName* family, ElementPtr operand) override;
    [[nodiscard]] std::int32_t PathLimit() const override;
    [[nodiscard]] ElementPtr FindUndefinedFont(CFilterEPS& m, const CName* key) override {
        return m_pFonts->MakeFont(m, key);
    }

    [[nodiscard]] int ScanBuffer(CFilterEPS& m, std::string_view text) override;
    [[nodiscard]] int ScanToken(CFilterEPS& m, const CStringElement& source, ElementPtr& object,
                                std::int32_t& consumed) override;
    [[nodiscard]] TokenNumber NumberOf(std::string_view token) const override;
    void Pack(CArrayElement& array) const override { array.GetBody()->Pack(); }
    [[nodiscard]] int ExecuteOther(CFilterEPS& m, const CElement& e) override;
    [[nodiscard]] bool RunsFiles() const override { return true; }
    [[nodiscard]] bool HasFilter(std::string_view name) const override;
    [[nodiscard]] std::int32_t SaveLimit() const override { return MAX_SAVES; }

    /// Starts on a way out: what an operator answers then.
    [[nodiscard]] static int Leave(CFilterEPS& m, WayOut way) noexcept {
        m.m_nError = PSERR_NONE;
        Of(m).m_WayOut = way;
        return -1;
    }
    /// Whether something is on a way out.
    [[nodiscard]] bool IsLeaving() const noexcept { return m_WayOut != WayOut::none; }
    /// Whether what answered -1 was on that way, which ends here.
    [[nodiscard]] bool Take(WayOut way) noexcept;
    /// The page, in units of default user space: where the clip begins. That of the page device, if a program has set
    /// its size, or else of the file.
    [[nodiscard]] geometry::Box Page(const CFilterEPS& m) const { return SetPageSize(m).value_or(m_FilePage); }
    /// Where a pattern's procedure leaves the colour that it paints with; null while none is asked for its colour.
    [[nodiscard]] PatternProbe* Probe() const noexcept { return m_pProbe; }
    void SetProbe(PatternProbe* probe) noexcept { m_pProbe = probe; }
    [[nodiscard]] CFontFaces& Fonts() noexcept { return *m_pFonts; }
    /// The glyph whose procedure is running; null while none is.
    [[nodiscard]] GlyphProcedure* Glyph() const noexcept { return m_pGlyph; }
    void SetGlyph(GlyphProcedure* glyph) noexcept { m_pGlyph = glyph; }
    /// The composite font whose descendant is the current font while a procedure runs; null otherwise.
    [[nodiscard]] const CDictionary* RootFont() const noexcept { return m_pRootFont; }
    void SetRootFont(const CDictionary* font) noexcept { m_pRootFont = font; }
    [[nodiscard]] ResourceDirectories& Resources() noexcept { return m_Resources; }
    /// For each active save the depth of the graphics state stack behind it.
    [[nodiscard]] std::vector<int>& SaveDepths() noexcept { return m_SaveDepths; }
    [[nodiscard]] SystemParameters& Parameters() noexcept { return m_Parameters; }
    /// How many pages were shown since the last setpagedevice.
    [[nodiscard]] std::int32_t& PageCount() noexcept { return m_nPageCount; }
    /// Milliseconds as `usertime` and `realtime` tell them: a count of how often they were asked, so that a file draws
    /// the same on every run.
    [[nodiscard]] std::int32_t NextMillisecond() noexcept { return m_nMilliseconds++; }

private:
    /// FindProgram, but for what the program's comments tell.
    [[nodiscard]] int EnterProgram(CFilterEPS& m, const CFileElement& file);
    [[nodiscard]] int EndStoppedRun(CFilterEPS& m);

    WayOut m_WayOut = WayOut::none;
    std::optional<tagRunFailure> m_Failure;  ///< of the last error, whether or not it was caught
    int m_nFileDepth = 0;                    ///< of the scan of the input and what it runs
    bool m_bMetEnd = false;                  ///< the scanner has passed a line that begins with %%EOF
    std::int32_t m_nMilliseconds = 0;
    geometry::Box m_FilePage = DEFAULT_PAGE;
    std::int32_t m_nPageCount = 0;
    PatternProbe* m_pProbe = nullptr;
    std::vector<int> m_SaveDepths;
    ResourceDirectories m_Resources;
    SystemParameters m_Parameters;
    std::unique_ptr<CFontFaces> m_pFonts;
    GlyphProcedure* m_pGlyph = nullptr;
    const CDictionary* m_pRootFont = nullptr;
};
