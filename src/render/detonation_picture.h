#pragma once
// The detonation map's picture (picDeto, 460 x 401): the fixed background with the title, both
// grids, their scales and the table of read-outs, the colour strip (picColor) the cells are
// copied from, and the cells themselves. The window lays its labels and cover shapes over the
// places named here; the command line draws those into the picture as well.

#include "views/detonation_map.h"

#include <QImage>
#include <QRect>
#include <QString>

#include <array>
#include <optional>

namespace torvane::render {

// The labels of the window, in the order of DetonationLabelNames.
enum class DetonationLabel {
    RunDis,
    RunTime,
    Ne,
    Th,
    Part1,
    Part2,
    Total1,
    Total2,
    TK1,
    TK2,
};
inline constexpr int DetonationLabelCount = 10;
QString DetonationLabelName(DetonationLabel label);
QRect DetonationLabelRect(DetonationLabel label);

// The cover shapes of a map that was not recorded: ShpNo (its notice), ShpMap (its grid) and
// ShpPart (its row of the table).
enum class DetonationCover { No, Map, Part };
QString DetonationCoverName(DetonationCover cover, int map);
QRect DetonationCoverRect(DetonationCover cover, int map);
inline constexpr const char* DetonationNoDataText = "No Data";

// The 7 x 77 colour strip: eleven bands of 7 pixels, 46 and more at the top, empty at the foot.
QImage DetonationColorStrip();

// The background: everything but the cells, the label texts and the covers.
QImage DetonationBackground();

// The background with every cell of the present maps copied from the strip, and beside the
// strip a mark at the band of the largest count.
QImage DetonationPicture(const views::DetonationMapState& state);

// What the window shows, labels and covers included, as one picture (torvane-cli deto --png).
QImage DetonationPictureWithTexts(const views::DetonationMapState& state,
                                  const std::optional<views::DetonationReadOut>& readOut = {});

// The label texts of a model and a read-out, as the window shows them.
std::array<QString, DetonationLabelCount>
DetonationTexts(const views::DetonationMapState& state,
                const std::optional<views::DetonationReadOut>& readOut);

} // namespace torvane::render
