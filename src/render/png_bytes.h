#pragma once
// A picture as the bytes of a PNG file, made quickly. Most of the time of writing a PNG goes into
// filtering and compressing its rows; a picture drawn without antialiasing from a handful of
// colours fits a palette, a quarter of the bytes, and a light compression level loses little
// on such flat pictures. The file decodes to exactly the picture's pixels whichever way it went.

#include <QByteArray>
#include <QImage>

namespace torvane::render {

// Empty when the picture could not be encoded (no memory).
QByteArray PngBytes(const QImage& picture);

} // namespace torvane::render
