#pragma once
// The display-item dialog (frmTLM0012): the items of a layer that exist, which of them are on
// show, and the operator's new choice.

#include "shell/message_sink.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::items {

// One position of a layer's ItemChannel, as the dialog is handed it.
struct ItemChoice {
    int Kinds = 0; // channel number, 99 for a computed item
    bool Extant = false;
    bool View = false;
    std::string ItemName; // a computed item's name; empty for a slot

    friend bool operator==(const ItemChoice&, const ItemChoice&) = default;
};

// An entry of lstItem: the name and the position it stands for.
struct ChoiceEntry {
    std::string Name;
    int Position = 0;
    bool Marked = false;

    friend bool operator==(const ChoiceEntry&, const ChoiceEntry&) = default;
};

// The list as it opens: the existing positions in order, channels by name, computed items by
// their own, marked where they are on show.
std::vector<ChoiceEntry> ChoiceEntriesOf(const std::vector<ItemChoice>& items);

inline constexpr std::string_view NoItemChosenText = "Choose an item to indicate. ";

// OK with the positions marked in the list: the View flag of every position of `items`, set for
// the marked ones only. With nothing marked the operator is told so and the dialog stays.
std::optional<std::vector<bool>> ConfirmChoice(const std::vector<ItemChoice>& items,
                                               const std::vector<int>& markedPositions,
                                               shell::MessageSink& sink);

} // namespace torvane::items
