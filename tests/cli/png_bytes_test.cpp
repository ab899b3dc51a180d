// The render command's PNG: whatever the picture, the file decodes to exactly its pixels.

#include "render/png_bytes.h"

#include <gtest/gtest.h>

#include <QImage>

namespace torvane::render {
namespace {

QImage Decoded(const QByteArray& bytes) {
    return QImage::fromData(bytes, "PNG").convertToFormat(QImage::Format_ARGB32);
}

TEST(PngBytesTest, EveryPictureDecodesToItsOwnPixels) {
    QImage flat(300, 200, QImage::Format_RGB32);
    flat.fill(Qt::white);
    // Up to the palette's last colour, then one past it.
    QImage full = flat.copy();
    QImage tooMany = flat.copy();
    for (int i = 0; i < 257; ++i) {
        const QRgb color = qRgb(i % 256, i / 256 * 40, 7);
        if (i < 255) { // white is the 256th
            full.setPixel(i, i % 200, color);
        }
        tooMany.setPixel(i, i % 200, color);
    }
    QImage translucent(40, 30, QImage::Format_ARGB32);
    translucent.fill(qRgba(10, 20, 30, 128));
    const QImage other = flat.convertToFormat(QImage::Format_RGB888);

    for (const QImage& picture : {flat, full, tooMany, translucent, other}) {
        const QByteArray bytes = PngBytes(picture);
        ASSERT_FALSE(bytes.isEmpty());
        EXPECT_EQ(Decoded(bytes), picture.convertToFormat(QImage::Format_ARGB32));
    }
    // A palette file is the smaller: the quick path was taken for the picture that fits.
    EXPECT_LT(PngBytes(full).size(), PngBytes(tooMany).size());
    EXPECT_TRUE(PngBytes(QImage()).isEmpty());
}

} // namespace
} // namespace torvane::render
