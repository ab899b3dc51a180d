#include "views/detonation_map.h"

#include "layout/file_image.h"
#include "logger/file_list.h"
#include "shell/number_format.h"

#include <algorithm>
#include <array>

namespace torvane::views {
namespace fs = std::filesystem;
namespace {

constexpr int LowestNe = 5000;
constexpr int RowNe = 500;
constexpr int ColumnPercent = 5;
constexpr int CountsPerBand = 5;

// The strip from the top: 46 and more, 41 to 45, ... 1 to 5, empty.
constexpr std::array<std::uint32_t, BandCount> BandColors{0x000000, 0xFF0000, 0xFF8442, 0xFFFF00,
                                                          0x00FF00, 0x008400, 0x00FFFF, 0x0084FF,
                                                          0x4200FF, 0x004284, 0xFFFFFF};

// The press's inverse of the painting rule stops on these offsets, the lines between cells.
constexpr std::array<int, 11> ColumnLines{14, 29, 44, 59, 74, 75, 90, 105, 120, 135, 150};
constexpr std::array<int, 13> RowLines{14, 29, 30, 45, 60, 61, 76, 91, 92, 107, 122, 123, 138};

std::string RangeText(int low, int step, int index) {
    return std::to_string(low + step * index) + "-" + std::to_string(low + step * (index + 1));
}

} // namespace

bool ReadDetonationFile(DetonationMapState& state, shell::MessageSink& sink) {
    const DetonationSource source = state.Source;
    const fs::path path = state.Path;
    state = DetonationMapState{};
    state.Source = source;
    state.Path = path;
    std::error_code error;
    switch (ReadDtoFile(path, state.Bytes, error)) {
    case DtoReadResult::Read:
        break;
    case DtoReadResult::NotFound:
        shell::ShowMessage(sink, DetonationFileNotFound, shell::buttons::Ok,
                           shell::icons::Information);
        return false;
    case DtoReadResult::WrongLength:
        shell::ShowMessage(sink, DetonationDataError, shell::buttons::Ok,
                           shell::icons::Information);
        return false;
    case DtoReadResult::Unreadable:
        shell::ShowRunTimeError(sink, layout::DescribeFailure({error, path}));
        return false;
    }
    for (int map = 0; map < MapCount; ++map) {
        const auto m = static_cast<std::size_t>(map);
        state.Present[m] = state.Bytes[PresenceOffset + m] != 0;
        if (!state.Present[m]) {
            continue;
        }
        for (int i = 0; i < MapCells; ++i) {
            const std::uint8_t count = state.Bytes[MapOffset(map) + static_cast<std::size_t>(i)];
            state.Counts[m][static_cast<std::size_t>(i / MapColumns)]
                        [static_cast<std::size_t>(i % MapColumns)] = count;
            state.Total[m] += count;
        }
    }
    state.RunTime = static_cast<std::int32_t>(
        BytesToLong(std::span(state.Bytes).subspan(RunTimeOffset, RunTimeBytes)));
    state.RunDistance = static_cast<std::int32_t>(
        BytesToLong(std::span(state.Bytes).subspan(RunDistanceOffset, RunDistanceBytes)));
    return true;
}

std::optional<DetonationMapState> LoadDetonationMap(DetonationSource source, const fs::path& path,
                                                    shell::MessageSink& sink) {
    DetonationMapState state;
    state.Source = source;
    state.Path = path;
    if (!ReadDetonationFile(state, sink)) {
        return std::nullopt;
    }
    return state;
}

bool SaveDetonationFile(const DetonationMapState& state, const fs::path& path,
                        shell::MessageSink& sink) {
    std::error_code error;
    if (!WriteDtoFile(path, state.Bytes, error)) {
        shell::ShowRunTimeError(sink, layout::DescribeFailure({error, path}));
        return false;
    }
    return true;
}

void ReleaseDetonationFile(const DetonationMapState& state) {
    if (state.Source == DetonationSource::File || state.Path.empty()) {
        return;
    }
    std::error_code ignored;
    fs::remove(state.Path, ignored);
}

DetonationLabels LabelsOf(const DetonationMapState& state) {
    DetonationLabels labels;
    labels.RunDistance = shell::FormatNumber(state.RunDistance, shell::formats::Thousands);
    labels.RunTime = logger::MeasurementTimeText(state.RunTime);
    for (std::size_t map = 0; map < MapCount; ++map) {
        if (!state.Present[map]) {
            continue;
        }
        labels.Total[map] = std::to_string(state.Total[map]);
        labels.PerKm[map] =
            state.RunDistance == 0
                ? "0"
                : shell::FormatNumber(static_cast<double>(state.Total[map]) / state.RunDistance,
                                      shell::formats::Ratio);
    }
    return labels;
}

CellPlace CellPlaceOf(int map, int a, int b) {
    return {MapLeft[static_cast<std::size_t>(map)] + CellSize * a + a / 2 + a / 10,
            248 - (CellSize * b + b / 2 + b / 4)};
}

CountBand BandAt(int index) {
    return {index * CellSize, BandColors[static_cast<std::size_t>(index)]};
}

CountBand CountBandOf(int count) {
    if (count <= 0) {
        return BandAt(BandCount - 1);
    }
    const int fromEmpty = std::min((count + CountsPerBand - 1) / CountsPerBand, BandCount - 1);
    return BandAt(BandCount - 1 - fromEmpty);
}

std::optional<DetonationReadOut> ReadOutAt(const DetonationMapState& state, int x, int y) {
    if (y < MapTop || y >= MapBottom) {
        return std::nullopt;
    }
    int map = -1;
    for (int m = 0; m < MapCount; ++m) {
        const int left = MapLeft[static_cast<std::size_t>(m)];
        if (x >= left && x < left + MapWidth) {
            map = m;
        }
    }
    if (map < 0 || !state.Present[static_cast<std::size_t>(map)]) {
        return std::nullopt;
    }
    const int dx = x - MapLeft[static_cast<std::size_t>(map)];
    const int dy = MapBottom - y;
    if (std::ranges::find(ColumnLines, dx) != ColumnLines.end() ||
        std::ranges::find(RowLines, dy) != RowLines.end()) {
        return std::nullopt;
    }
    const int a = (dx - dx / 14) / CellSize;
    const int b = (dy - dy / 14 - dy / 28) / CellSize;
    if (a > MapRows - 1 || b > MapColumns - 1) {
        return std::nullopt;
    }
    DetonationReadOut readOut;
    readOut.Map = map;
    readOut.Row = a;
    readOut.Column = b;
    for (std::size_t m = 0; m < MapCount; ++m) {
        if (state.Present[m]) {
            readOut.Part[m] = std::to_string(
                state.Counts[m][static_cast<std::size_t>(a)][static_cast<std::size_t>(b)]);
        }
    }
    readOut.Ne = RangeText(LowestNe, RowNe, a);
    readOut.Th = RangeText(0, ColumnPercent, b);
    return readOut;
}

int LargestCount(const DetonationMapState& state) {
    int largest = 0;
    for (std::size_t map = 0; map < MapCount; ++map) {
        if (!state.Present[map]) {
            continue;
        }
        for (const auto& row : state.Counts[map]) {
            largest = std::max(largest, int{*std::ranges::max_element(row)});
        }
    }
    return largest;
}

} // namespace torvane::views
