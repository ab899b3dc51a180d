#pragma once
// The sixteen items a formula may name. An item's index in this table is its channel number,
// and names are compared in lower case.

#include "logdata/layer.h"

#include <string>
#include <string_view>
#include <vector>

namespace torvane::calc {

inline constexpr int FormulaItemCount = 16;
// LAP has no stream of its own in a formula: it always reads 0.
inline constexpr int FormulaLapIndex = 15;

// The lower-case name of item `index` (0..15), e.g. "ne"; empty for any other index.
std::string_view FormulaItemName(int index);
// The index of a lower-case name in the table, or -1.
int FormulaItemIndex(std::string_view lowerName);
// True when the new item's name is one of the sixteen lower-case names: "ne" is refused, "Ne"
// and "NE" are not.
bool IsReservedItemName(std::string_view name);

// The items a layer offers to a formula (Kinds): the channels of its existing slots in slot
// order; computed items are never offered.
std::vector<int> OfferedKinds(const logdata::LayerRecord& record);
// The lower-case names of those channels, in the same order.
std::vector<std::string> OfferedNames(const std::vector<int>& kinds);

std::string ToLowerAscii(std::string_view text);

} // namespace torvane::calc
