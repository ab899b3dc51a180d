#include "output/print_geometry.h"

#include "shell/rounding.h"

#include <algorithm>

namespace torvane::output {

CaptureMargins CaptureMarginsOf(int mode, int captionHeight) {
    switch (mode) {
    case 0:
        return {3, captionHeight + 3, 6, captionHeight + 32};
    case 2:
        return {3, captionHeight + 4, 5, captionHeight + 33};
    default:
        return {};
    }
}

CaptureArea CaptureAreaOf(int mode, int captionHeight, int width, int height) {
    const CaptureMargins margins = CaptureMarginsOf(mode, captionHeight);
    return {margins.Left, margins.Top, std::max(0, width - margins.WidthLess),
            std::max(0, height - margins.HeightLess)};
}

int CorrectedZoom(int zoom, double width, double height, double newWidth, double newHeight) {
    if (width <= 0.0 || height <= 0.0) {
        return zoom;
    }
    const double change = (newWidth / width * newHeight / height * 100.0 - 100.0) / 2.0;
    return zoom + static_cast<int>(shell::RoundHalfEven(change));
}

PagePlacement CentrePicture(double pageWidth, double pageHeight, double pictureWidth,
                            double pictureHeight, int zoom) {
    const double z = zoom / 100.0;
    const double width = pictureWidth * z;
    const double height = pictureHeight * z;
    return {-(pageWidth - width) / 2.0, -(pageHeight - height) / 2.0, width, height};
}

} // namespace torvane::output
