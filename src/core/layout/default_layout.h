#pragma once
// The factory layout, and the rules that put a damaged stored layout right when it is read.

#include "graph/display_set.h"

namespace torvane::layout {

inline constexpr const char* InitialLayoutName = "INITIALIZE";

// The factory settings of all sixteen channels and the time scale; the name is left empty.
graph::DisplaySet DefaultLayout();

// What a record read from the file must satisfy before a window uses it: out-of-range styles,
// colours and scale numbers, bands without a bottom and an incomplete time scale are replaced.
void RepairLayout(graph::DisplaySet& record);

} // namespace torvane::layout
