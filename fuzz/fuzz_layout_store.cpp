// libFuzzer target of the layout store: the input is LAYOUT.DAT. It is loaded as the desktop
// loads it (length rule, decoding, repair), and record 0 is then used as `torvane-cli render`
// uses it: as the display of a real run, its scale column, time grid and every item's trace.
//
// Beyond the sanitizers, the harness checks that a loaded store holds 1 to 11 records and that
// the picture's lists stay bounded whatever the record says.

#include "fuzz_workspace.h"

#include "graph/layer_view.h"
#include "graph/picture_geometry.h"
#include "graph/scale_column.h"
#include "graph/time_axis.h"
#include "graph/trace_item.h"
#include "layout/default_layout.h"
#include "layout/layout_store.h"
#include "load/load_logging_file.h"
#include "logdata/deployment.h"
#include "logger/laf_table.h"
#include "shell/app_paths.h"
#include "shell/message_sink.h"
#include "tlm.h"
#include "vehicle/demo_setting.h"
#include "vehicle/run_file.h"

#include <cstdint>

namespace {

using namespace torvane;

constexpr std::int32_t Width = 1024;
constexpr std::int32_t Height = 600;

// libtlm's deployer, as the program's binding calls it.
class Decompressor : public logdata::LogFileDecompressor {
public:
    int Decompress(const std::filesystem::path& logFile, const std::filesystem::path& tempDir,
                   int fileNumber, logdata::LogHeader::Bytes& header,
                   std::int32_t& deployCount) override {
        std::int32_t bytesWritten = 0;
        return decomp_logfile(logFile.c_str(), tempDir.c_str(),
                              static_cast<std::int16_t>(fileNumber), header.data(), &bytesWritten,
                              &deployCount);
    }
};

struct Fixture {
    fuzz::Workspace Work{"fuzz-layout"};
    shell::AppPaths Paths{Work.Root() / "home"};
    shell::RecordingSink Sink;
    graph::GraphWindowState State;
    logger::LafTable Laf;

    Fixture() {
        fuzz::Require(Paths.MakeFolders(), "the program's folders can be made");
        const auto run = sim::GenerateRunFile(sim::DemoSetting(), 20'000.0, 3);
        fuzz::WriteInput(Work.Root() / "run.rlg", run);
        State.Layers.TempDir = Paths.TempDir();
        graph::NumberWindow(State, 1, Paths.TempDir());
        Decompressor decompressor;
        load::NoWindowView view;
        fuzz::Require(load::LoadLoggingFile(State, Work.Root() / "run.rlg", layout::DefaultLayout(),
                                            decompressor, Sink, view),
                      "the run loads");
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Fixture fixture;
    fuzz::WriteInput(fixture.Paths.InitDir() / "LAYOUT.DAT", {data, size});
    layout::LayoutStore store(fixture.Paths, fixture.Sink);
    fixture.Sink.Messages.clear();
    if (!store.LoadLayouts()) {
        return 0;
    }
    fuzz::Require(store.Count() >= 1 && store.Count() <= 11, "1 to 11 records");
    graph::DisplaySet display;
    fuzz::Require(store.GetLayout(0, display), "record 0 is there");

    // As the window takes a layout: record 0 is the display and the time scale.
    graph::GraphWindowState& state = fixture.State;
    graph::LayerView& view = state.Views[0];
    view = {};
    view.Display = display;
    graph::FillItemScales(view, state.Layers.Layer[0]);
    state.Time = display.Time;
    if (state.Time.PixelsPerStep <= 0 || state.Time.MsPerStep <= 0) {
        return 0; // render refuses such a time scale
    }
    const graph::ScaleColumn column = graph::ScaleColumnOf(state);
    fuzz::Require(column.Lines.size() <= 16 * 40000, "scale lines only where they can be seen");
    const graph::TimeGrid grid = graph::TimeGridOf(0.0, state.Time, Width);
    fuzz::Require(grid.Lines.size() <= Width / graph::GridColumns + 2, "grid lines in the picture");
    const auto items = static_cast<int>(state.Layers.Layer[0].ItemChannel.size());
    for (int item = 0; item < items; ++item) {
        if (!graph::ItemDrawn(state, 0, item, Height)) {
            continue;
        }
        const auto params =
            graph::TraceParamsFor(state, 0, item, graph::GraphLeft, Width - graph::GraphLeft, 0.0);
        if (!params) {
            continue;
        }
        graph::TraceLists lists;
        graph::BuildItemTrace(state, fixture.Laf, 0, item, *params, lists);
        fuzz::Require(lists.Main.size() <= 4 * static_cast<std::size_t>(Width) + 16,
                      "a trace holds a few points a column");
    }
    return 0;
}
