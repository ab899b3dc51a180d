#pragma once
// The grid dialog (frmTLM0014): an item's scale limits as the operator reads and types them, in
// engineering units (axis units divided by the scale's Divisor), the Default button's table,
// the keys the limit boxes take, and the checks of OK.

#include "graph/scale.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::items {

// An item of layer 0 that the dialog offers.
struct GridItem {
    int Position = 0;
    int Kinds = 0;         // channel number, 99 for a computed item
    int FormulaIndex = -1; // k of a computed item
    std::string Name;      // the channel's name or the computed item's own
    double MaxValue = 0.0; // a computed item's largest value, which sets its scale
    std::int32_t Max = 0;  // the item's limits in axis units; 0 and 0 when it has none
    std::int32_t Min = 0;

    friend bool operator==(const GridItem&, const GridItem&) = default;
};

// What mnuGrid hands the dialog: the items on show in position order, the one chosen first
// (an index into Items), and whether its grid is drawn.
struct GridRequest {
    std::vector<GridItem> Items;
    int Item = 0;
    bool Grid = false;
};

// What OK gives back: the item (by its position), its grid, and its limits in axis units, not
// yet rounded.
struct GridResult {
    int Position = 0;
    int FormulaIndex = -1;
    bool Grid = false;
    double Max = 0.0;
    double Min = 0.0;

    friend bool operator==(const GridResult&, const GridResult&) = default;
};

// The limits of the Default button by channel, in axis units; none for any other number.
struct AxisLimits {
    std::int32_t Max = 0;
    std::int32_t Min = 0;
};
std::optional<AxisLimits> DefaultLimits(int channel);

// The scale whose Divisor the boxes are measured with: FormulaScale for a computed item, the
// channel's default scale otherwise; scale number 0 gives the widest one, which bounds the
// limits.
graph::ScaleRecord LimitScaleOf(const GridItem& item, bool widest = false);

struct LimitTexts {
    std::string Max;
    std::string Min;

    friend bool operator==(const LimitTexts&, const LimitTexts&) = default;
};
// The boxes for an item as the dialog opens or another item is chosen: its own limits when it
// has any, else the ends of its scale.
LimitTexts LimitBoxesOf(const GridItem& item);
// The boxes after the Default button.
LimitTexts DefaultLimitBoxes(const GridItem& item);

// Whether a key typed into a limit box is taken: digits, backspace (8), and a "." while the
// text that stays beside the typed key holds none.
bool AcceptLimitKey(std::string_view keptText, char key);

enum class LimitBox { None, Max, Min };
struct GridRefusal {
    std::string_view Text;
    int Icon = 0;
    LimitBox Focus = LimitBox::None;

    friend bool operator==(const GridRefusal&, const GridRefusal&) = default;
};

inline constexpr std::string_view InputValueText = "Input value. ";
inline constexpr std::string_view IncorrectDataText = "Inputted data are not correct.";

// OK: the checks in their order; the first that fails is the refusal, and the dialog stays.
struct GridConfirmation {
    std::optional<GridRefusal> Refusal;
    GridResult Result;
};
GridConfirmation ConfirmGrid(const GridItem& item, bool grid, std::string_view maxText,
                             std::string_view minText);

} // namespace torvane::items
