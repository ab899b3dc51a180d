#pragma once
// The rules of the layout-save dialog without its widgets: what it lists and offers, and what
// saving the pending display under a typed name and deleting a chosen layout ask and do.

#include "layout/layout_store.h"
#include "shell/message_sink.h"

#include <string>
#include <string_view>
#include <vector>

namespace torvane::layout {

inline constexpr const char* LayoutNameMissingMessage = "Input a layout name. ";
inline constexpr const char* LayoutExistsMessage = "Already exists.Overwrite? ";
inline constexpr const char* DeleteLayoutMessage = "Do you delete a chosen layout? ";
// The named layouts a store holds besides record 0.
inline constexpr int NamedLayoutCount = MaxLayouts - 1;

struct NamedLayout {
    int Index = 0; // the record in the store
    std::string Name;

    friend bool operator==(const NamedLayout&, const NamedLayout&) = default;
};

// What the dialog offers: the records from 1 up, Delete while there is one, and Save only while
// fewer than ten are kept (the operator deletes first, even to overwrite); the first entry is
// chosen when there is one.
struct LayoutSaveOffer {
    std::vector<NamedLayout> Layouts;
    bool SaveEnabled = true;
    bool DeleteEnabled = false;
    int ChosenRow = -1;
};
LayoutSaveOffer LayoutSaveOfferOf(const LayoutStore& store);

enum class LayoutSaveResult {
    Saved,       // written and the store reloaded: the dialog closes
    NameMissing, // told; the name box takes the focus
    Declined,    // the operator would not overwrite: back to the dialog
    Failed,      // the store has told what went wrong: back to the dialog
};

// Saves the store's pending layout under the typed name, blanks at its ends dropped. A name
// that one of the listed layouts carries is overwritten only when the operator says Yes.
LayoutSaveResult SaveNamedLayout(LayoutStore& store, std::string_view typedName,
                                 shell::MessageSink& sink);

// Deletes record `index` once the operator confirms; false when nothing was deleted.
bool DeleteChosenLayout(LayoutStore& store, int index, shell::MessageSink& sink);

} // namespace torvane::layout
