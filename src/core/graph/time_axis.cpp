#include "graph/time_axis.h"

#include "shell/number_format.h"
#include "shell/rounding.h"

namespace torvane::graph {

std::int32_t ColumnOfTime(double time, double timeOffset, const TimeScale& scale) {
    const std::int64_t steps = shell::RoundToInt64(time - timeOffset) / scale.MsPerStep;
    return static_cast<std::int32_t>(steps * scale.PixelsPerStep + GraphLeft);
}

double RightEdgeTime(double timeOffset, std::int32_t width, const TimeScale& scale) {
    const std::int32_t steps = (width - GraphLeft) / scale.PixelsPerStep;
    return timeOffset + static_cast<double>(steps) * scale.MsPerStep;
}

void SetTimeZoom(TimeScale& scale, int level) {
    std::int16_t pixels = 1;
    switch (level) {
    case 2:
        pixels = 5;
        break;
    case 3:
        pixels = 10;
        break;
    case 4:
        pixels = 25;
        break;
    case 5:
        pixels = 50;
        break;
    default:
        break;
    }
    scale.PixelsPerStep = pixels;
    scale.MsPerStep = BaseStepMs;
    scale.MsPerGrid = GridColumns / pixels * BaseStepMs;
}

std::string TimeLabel(std::int64_t milliseconds) {
    const std::int64_t hours = milliseconds / 3'600'000;
    const std::int64_t minutes = milliseconds / 60'000 % 60;
    const std::int64_t seconds = milliseconds / 1000 % 60;
    const std::int64_t millis = milliseconds % 1000;
    std::string label;
    if (hours > 0) {
        label += std::to_string(hours) + "h";
    }
    if (minutes > 0) {
        label += shell::FormatText(std::to_string(minutes), shell::formats::TwoPlaces) + "m";
    }
    if (seconds > 0) {
        label += shell::FormatText(std::to_string(seconds), shell::formats::TwoPlaces) + "s";
    }
    if (millis > 0) {
        label += shell::FormatText(std::to_string(millis), shell::formats::ThreePlaces);
    }
    return label;
}

} // namespace torvane::graph
