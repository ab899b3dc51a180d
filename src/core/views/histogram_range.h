#pragma once
// The rules of the Ne range dialog (frmTLM0041, "Axial setup of Ne data"): what its boxes
// accept and which message OK gives.

#include "views/histogram.h"

#include <string>
#include <string_view>

namespace torvane::views {

inline constexpr std::int32_t NeRangeLimit = 20000;
inline constexpr std::int32_t NeRangeMinimumSpan = 20;
inline constexpr std::string_view NeRangeNotCorrect = "Inputted data are not correct.";
inline constexpr std::string_view NeRangeTooNarrow =
    "Input it so that the difference in DataStart and DataEnd may be beyond 20. ";

enum class NeRangeBox { Start, End };

struct NeRangeCheck {
    bool Accepted = false;
    NeRange Range;
    // What txtDataEnd holds after OK: an end over the limit is replaced by the limit.
    std::string EndText;
    // When refused: the message (shown with the information icon) and the box that gets focus.
    std::string_view Message;
    NeRangeBox Focus = NeRangeBox::Start;
};

// The check of OK, step by step.
NeRangeCheck CheckNeRange(std::string_view startText, std::string_view endText);

// What txtDataEnd holds when the focus leaves it: a number above the limit becomes "20000".
std::string LeaveNeEnd(std::string_view endText);

} // namespace torvane::views
