#include "calc/formula_items.h"

#include "logdata/channels.h"

#include <algorithm>
#include <array>

namespace torvane::calc {
namespace {

constexpr std::array<std::string_view, FormulaItemCount> LowerNames{
    "ne",  "th",  "vfw", "vrw",   "deto1", "deto2", "vb",   "vm1",
    "vm2", "vm3", "vm4", "frsus", "rrsus", "laf1",  "laf2", "lap"};

} // namespace

std::string_view FormulaItemName(int index) {
    return index >= 0 && index < FormulaItemCount ? LowerNames[static_cast<std::size_t>(index)]
                                                  : std::string_view{};
}

int FormulaItemIndex(std::string_view lowerName) {
    const auto found = std::ranges::find(LowerNames, lowerName);
    return found == LowerNames.end() ? -1 : static_cast<int>(found - LowerNames.begin());
}

bool IsReservedItemName(std::string_view name) {
    return FormulaItemIndex(name) >= 0;
}

std::vector<int> OfferedKinds(const logdata::LayerRecord& record) {
    std::vector<int> kinds;
    for (int slot = 0; slot < logdata::SlotCount; ++slot) {
        const auto index = static_cast<std::size_t>(slot);
        if (record.ItemExists[index] && index < record.ItemChannel.size()) {
            kinds.push_back(record.ItemChannel[index]);
        }
    }
    return kinds;
}

std::vector<std::string> OfferedNames(const std::vector<int>& kinds) {
    std::vector<std::string> names;
    for (const int kind : kinds) {
        names.emplace_back(FormulaItemName(kind));
    }
    return names;
}

std::string ToLowerAscii(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return lower;
}

} // namespace torvane::calc
