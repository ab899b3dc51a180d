#pragma once
// The export of a layer's items as comma-separated text: a header line of "Time(s)" and the
// item names, then one line a row step with the time in seconds and each item's value. The
// row step is the smallest sampling interval among the items; each item reads its own stream
// forward and keeps only the pair of samples around the current row, so the memory an export
// needs does not grow with the length of the run.

#include "logdata/layer.h"
#include "logger/laf_table.h"
#include "shell/message_sink.h"

#include <filesystem>
#include <optional>
#include <span>

namespace torvane::logdata {

// The marked part of a run, in ms: the export starts at Start and its last row is the last
// step at or before End.
struct CsvRange {
    double Start = 0.0;
    double End = 0.0;
};

// Writes items of layer 0 (indexes into its ItemChannel, slots and computed items, in the
// order given) to `file`, replacing any old one; from 0 to the end of the longest item, or
// over the range. No item, no file. Lines end in CR LF. A file that cannot be made or written
// is reported as a run-time error and false comes back; the old file then stays as it was.
bool WriteCsv(const std::filesystem::path& file, const LayerSet& layers, std::span<const int> items,
              std::optional<CsvRange> range, const logger::LafTable& laf, shell::MessageSink& sink);

} // namespace torvane::logdata
