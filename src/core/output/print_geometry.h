#pragma once
// The arithmetic of a hard copy: how much of a window's frame the picture leaves out, how the
// zoom follows a change of paper, and where the picture stands on the page.

namespace torvane::output {

// What is cut off the window's captured frame, in pixels.
struct CaptureMargins {
    int Left = 0;
    int Top = 0;
    int WidthLess = 0;
    int HeightLess = 0;
};

// The margins by the caller's mode, with `captionHeight` the height of the window's caption:
// mode 0 and 2 leave out the frame (2 a pixel more at the top), any other mode nothing.
CaptureMargins CaptureMarginsOf(int mode, int captionHeight);

// The part of a window of `width` × `height` pixels (frame and caption included) that is
// printed. Empty (zero width or height) when the window is no larger than its frame.
struct CaptureArea {
    int Left = 0;
    int Top = 0;
    int Width = 0;
    int Height = 0;
};
CaptureArea CaptureAreaOf(int mode, int captionHeight, int width, int height);

// The zoom after the paper or the orientation changed the printable area from
// `width` × `height` to `newWidth` × `newHeight`, so that the picture keeps its share of the
// page: half the relative change of area is added, in whole percent. A zero area before
// leaves the zoom as it was.
int CorrectedZoom(int zoom, double width, double height, double newWidth, double newHeight);

// Where the picture goes on the page, in the page's units: the page's coordinates start at
// (`ScaleLeft`, `ScaleTop`), and the picture is painted at (0, 0) with `Width` × `Height`. Beyond
// 100 % the picture can be larger than the page; the origin is then positive and the page shows
// the picture's centre.
struct PagePlacement {
    double ScaleLeft = 0.0;
    double ScaleTop = 0.0;
    double Width = 0.0;
    double Height = 0.0;
};
PagePlacement CentrePicture(double pageWidth, double pageHeight, double pictureWidth,
                            double pictureHeight, int zoom);

} // namespace torvane::output
