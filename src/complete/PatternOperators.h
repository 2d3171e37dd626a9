// Patterns and forms, and the one colour that an area in a pattern is drawn in.
#pragma once

#include <array>
#include <functional>

#include "graphics/GraphState.h"
#include "interp/OperatorTable.h"

class CFilterEPS;

/// makepattern, setpattern, execform.
extern constinit const OpTable kCompletePatternOperators;

/// Red, green and blue from 0 to 1.
using RgbColor = std::array<float, 3>;

/// What runs while the procedure of a pattern is asked for its colour.
struct PatternProbe {
    PatternProbe* outer;  ///< of the pattern whose procedure is painting with this one
    int depth;
    RgbColor color{};
    bool isKnown = false;
};

/// The colour of the graphics state is RGB for a scope, whatever the program has set.
class RgbScope {
public:
    RgbScope(CGraphState& state, const RgbColor& color) noexcept;
    RgbScope(const RgbScope&) = delete;
    RgbScope& operator=(const RgbScope&) = delete;
    ~RgbScope();

private:
    CGraphState& m_State;
    std::int32_t m_nKind;
    RgbColor m_Color;
};

/// The colour that stands for the pattern of the graphics state: an uncoloured one's own, the first that a coloured one
/// paints with, a shading's. 1, whether or not there is one, or -1 when the run has to end.
[[nodiscard]] int FindPatternColor(CFilterEPS& m, RgbColor& color, bool& isKnown);
/// How the components of a colour look in a colour space, a name or an array. The same answers.
[[nodiscard]] int FindColorIn(CFilterEPS& m, const CElement& space, const std::vector<double>& components,
                              RgbColor& color, bool& isKnown);

/// Whether a pattern's procedure is running to tell its colour.
[[nodiscard]] bool IsColorProbed(const CFilterEPS& m);
/// Takes the current colour as the pattern's and ends the procedure: -1.
[[nodiscard]] int LeaveColor(CFilterEPS& m);
