#include "items/item_choice.h"

#include "logdata/channels.h"

#include <algorithm>

namespace torvane::items {

std::vector<ChoiceEntry> ChoiceEntriesOf(const std::vector<ItemChoice>& items) {
    std::vector<ChoiceEntry> entries;
    for (std::size_t position = 0; position < items.size(); ++position) {
        const ItemChoice& item = items[position];
        if (!item.Extant) {
            continue;
        }
        std::string name = item.Kinds == logdata::ComputedChannel
                               ? item.ItemName
                               : std::string(logdata::ChannelName(item.Kinds));
        entries.push_back({std::move(name), static_cast<int>(position), item.View});
    }
    return entries;
}

std::optional<std::vector<bool>> ConfirmChoice(const std::vector<ItemChoice>& items,
                                               const std::vector<int>& markedPositions,
                                               shell::MessageSink& sink) {
    std::vector<bool> view(items.size(), false);
    for (const int position : markedPositions) {
        if (position >= 0 && static_cast<std::size_t>(position) < view.size()) {
            view[static_cast<std::size_t>(position)] = true;
        }
    }
    if (std::find(view.begin(), view.end(), true) == view.end()) {
        shell::ShowMessage(sink, NoItemChosenText, shell::buttons::Ok, shell::icons::Warning);
        return std::nullopt;
    }
    return view;
}

} // namespace torvane::items
