// libFuzzer target of the air/fuel table: the input is INT/LAF_DATA.CSV, loaded as the program
// loads it at start, and then used as the readers use it, on every voltage of the logger's range.
//
// Beyond the sanitizers: a table that loads converts every voltage to a finite ratio.

#include "fuzz_workspace.h"

#include "logger/laf_table.h"
#include "shell/message_sink.h"

#include <cmath>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace torvane;
    static const fuzz::Workspace work("fuzz-laf");
    fuzz::WriteInput(work.Root() / "LAF_DATA.CSV", {data, size});
    shell::RecordingSink sink;
    logger::LafTable table;
    logger::LoadLafTable(table, work.Root(), sink);
    if (!table.Loaded()) {
        return 0;
    }
    for (int millivolts = -100; millivolts <= 5100; millivolts += 7) {
        const double ratio = table.ConvertLaf(millivolts / 1000.0);
        fuzz::Require(std::isfinite(ratio), "a finite ratio for every voltage");
    }
    return 0;
}
