#include "layout/layout_save_rules.h"

#include "layout/layout_file.h"

#include <algorithm>

namespace torvane::layout {

LayoutSaveOffer LayoutSaveOfferOf(const LayoutStore& store) {
    LayoutSaveOffer offer;
    const std::vector<std::string> names = store.GetLayoutNames();
    for (std::size_t index = 1; index < names.size(); ++index) {
        offer.Layouts.push_back({static_cast<int>(index), names[index]});
    }
    const auto count = static_cast<int>(offer.Layouts.size());
    offer.SaveEnabled = count < NamedLayoutCount;
    offer.DeleteEnabled = count > 0;
    offer.ChosenRow = count > 0 ? 0 : -1;
    return offer;
}

LayoutSaveResult SaveNamedLayout(LayoutStore& store, std::string_view typedName,
                                 shell::MessageSink& sink) {
    const std::string name = TrimBlanks(typedName);
    if (name.empty()) {
        shell::ShowMessage(sink, LayoutNameMissingMessage, shell::buttons::Ok,
                           shell::icons::Warning);
        return LayoutSaveResult::NameMissing;
    }
    const std::vector<NamedLayout> listed = LayoutSaveOfferOf(store).Layouts;
    const bool exists =
        std::ranges::any_of(listed, [&](const NamedLayout& layout) { return layout.Name == name; });
    if (exists && shell::ShowMessage(sink, LayoutExistsMessage, shell::buttons::YesNo,
                                     shell::icons::Warning) != shell::answers::Yes) {
        return LayoutSaveResult::Declined;
    }
    // SaveLayout reloads the store from what it wrote.
    return store.SaveLayout(name) ? LayoutSaveResult::Saved : LayoutSaveResult::Failed;
}

bool DeleteChosenLayout(LayoutStore& store, int index, shell::MessageSink& sink) {
    if (shell::ShowMessage(sink, DeleteLayoutMessage, shell::buttons::OkCancel,
                           shell::icons::Information) != shell::answers::Ok) {
        return false;
    }
    return store.DeleteLayout(index);
}

} // namespace torvane::layout
