// Writes the seed corpus of fuzz_layout_store: the factory file, a full store of eleven records,
// and records whose values stand at the edges the repair and the picture must survive.

#include "layout/layout_file.h"
#include "layout/layout_store.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace {

using namespace torvane;

std::vector<std::uint8_t> WithRecordZero(const std::function<void(graph::DisplaySet&)>& edit) {
    std::vector<std::uint8_t> bytes = layout::FactoryLayoutFile();
    const std::span<std::uint8_t, layout::LayoutRecordSize> record(
        bytes.data() + layout::LayoutHeadSize, layout::LayoutRecordSize);
    graph::DisplaySet display = layout::DecodeLayoutRecord(record);
    edit(display);
    layout::EncodeLayoutRecord(display, record);
    return bytes;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s SEED_FOLDER\n", argv[0]);
        return 2;
    }
    constexpr std::int32_t Largest = std::numeric_limits<std::int32_t>::max();
    std::vector<std::vector<std::uint8_t>> seeds;
    seeds.push_back(layout::FactoryLayoutFile());
    std::vector<std::uint8_t> full = layout::FactoryLayoutFile();
    for (int extra = 1; extra <= 11; ++extra) {
        full.insert(full.end(), full.begin() + layout::LayoutHeadSize,
                    full.begin() + layout::RecordOffset(1));
    }
    seeds.push_back(full);
    seeds.push_back(WithRecordZero([](graph::DisplaySet& d) { d.Time = {1, Largest, Largest}; }));
    seeds.push_back(WithRecordZero([](graph::DisplaySet& d) { d.Time = {32767, 100, 1}; }));
    seeds.push_back(WithRecordZero([](graph::DisplaySet& d) { d.Time = {5, 0, 7}; }));
    seeds.push_back(WithRecordZero([](graph::DisplaySet& d) {
        for (auto& item : d.Items) {
            item.Max = Largest;
            item.Min = -Largest;
            item.Grid = 1;
            item.Zoom = 9;
        }
    }));
    seeds.push_back(WithRecordZero([](graph::DisplaySet& d) {
        for (auto& item : d.Items) {
            item.Bottom = 0;
            item.View = 7;
            item.Color = 99;
        }
    }));
    for (std::size_t i = 0; i < seeds.size(); ++i) {
        std::ofstream out(std::filesystem::path(argv[1]) / ("seed-" + std::to_string(i)),
                          std::ios::binary);
        out.write(reinterpret_cast<const char*>(seeds[i].data()),
                  static_cast<std::streamsize>(seeds[i].size()));
    }
    return 0;
}
