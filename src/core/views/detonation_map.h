#pragma once
// The detonation map window (frmTLM0030) as a plain model: it only ever reads a .dto file,
// whichever source made it, keeps the bytes as read so that a save writes them back unchanged,
// and says what its labels, cells and read-out show. The widget paints what it returns.

#include "shell/message_sink.h"
#include "views/dto_file.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace torvane::views {

// mnuDspDeto(1..3): where a map comes from.
enum class DetonationSource {
    Logger = 1, // the logger's own map, through a work file
    Layer = 2,  // computed from the active layer of a graph window, through a work file
    File = 3,   // a .dto file the operator chose or handed over
};

inline constexpr const char* DetonationFileNotFound = "File not found.";
inline constexpr const char* DetonationDataError = "Error detonation map data.";

struct DetonationMapState {
    DetonationSource Source = DetonationSource::File;
    std::filesystem::path Path;
    // The file's bytes as read; an older 805-byte file with both presence bytes forced to 1.
    DetonationBytes Bytes{};
    // Counts by map, engine speed row a and throttle column b.
    std::array<std::array<std::array<std::int16_t, MapColumns>, MapRows>, MapCount> Counts{};
    std::array<bool, MapCount> Present{};
    std::array<std::int32_t, MapCount> Total{};
    std::int32_t RunDistance = 0;
    std::int32_t RunTime = 0;
};

// Clears the model and reads its file. False after telling the operator ("File not found.",
// "Error detonation map data." or the failure of the read); the window then closes.
bool ReadDetonationFile(DetonationMapState& state, shell::MessageSink& sink);

// A model of the source and path, read; nothing when the read failed.
std::optional<DetonationMapState> LoadDetonationMap(DetonationSource source,
                                                    const std::filesystem::path& path,
                                                    shell::MessageSink& sink);

// Writes the kept bytes to path (807 bytes, through a temporary file). False after telling the
// operator why not.
bool SaveDetonationFile(const DetonationMapState& state, const std::filesystem::path& path,
                        shell::MessageSink& sink);

// The window's end: a work file made for it (logger or layer) is deleted; a file of the
// operator's is left alone.
void ReleaseDetonationFile(const DetonationMapState& state);

// What the labels show. A map that is not present leaves its labels empty.
struct DetonationLabels {
    std::string RunDistance;                 // lblRunDis, "#,##0"
    std::string RunTime;                     // lblRunTime, "000H00M00S"
    std::array<std::string, MapCount> Total; // lblTotal1, lblTotal2
    std::array<std::string, MapCount> PerKm; // lblTK1, lblTK2: "##0.#0", "0" without distance
};
DetonationLabels LabelsOf(const DetonationMapState& state);

// The picture's geometry: a 460 x 401 picture, two grids of 7 x 7 cells with the engine speed
// row along x and the throttle column upwards.
inline constexpr int PictureWidth = 460;
inline constexpr int PictureHeight = 401;
inline constexpr int CellSize = 7;
inline constexpr std::array<int, MapCount> MapLeft{33, 220};
inline constexpr int MapTop = 102;
inline constexpr int MapBottom = 255; // exclusive
inline constexpr int MapWidth = 150;

struct CellPlace {
    int X = 0;
    int Y = 0;
};
// Top left of the cell of speed row a and throttle column b in map 0 or 1.
CellPlace CellPlaceOf(int map, int a, int b);

// The band of the colour strip a count is painted with: its top in the 7 x 77 strip and its
// colour as 0xRRGGBB. Eleven bands: 0, then five counts a band, then 46 and more.
struct CountBand {
    int Top = 0;
    std::uint32_t Rgb = 0;
};
inline constexpr int BandCount = 11;
CountBand CountBandOf(int count);
// Band i from the top of the strip (0: 46 and more, 10: empty).
CountBand BandAt(int index);

// What a left press on the picture reads out; nothing off the maps, on a line between cells,
// or on a map that is not present.
struct DetonationReadOut {
    int Map = 0;
    int Row = 0;    // a: engine speed
    int Column = 0; // b: throttle
    // lblPart1, lblPart2: the cell's count; nothing leaves the label as it is (a map that is
    // not present).
    std::array<std::optional<std::string>, MapCount> Part;
    std::string Ne; // lblNe, "5000-5500"
    std::string Th; // lblTh, "0-5"
};
std::optional<DetonationReadOut> ReadOutAt(const DetonationMapState& state, int x, int y);

// The largest count of the present maps: the top of the colour scale a glance is drawn to.
int LargestCount(const DetonationMapState& state);

} // namespace torvane::views
