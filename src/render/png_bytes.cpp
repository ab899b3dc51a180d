#include "render/png_bytes.h"

#include <QBuffer>
#include <QImageWriter>

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace torvane::render {
namespace {

constexpr int PaletteSize = 256;

// The picture's colours and where each is in the table; nullopt past PaletteSize colours.
class ColorIndex {
public:
    std::optional<uchar> IndexOf(QRgb color) {
        // Open addressing at a quarter load: a colour is found in a probe or two.
        std::size_t slot = Hash(color);
        while (used_[slot]) {
            if (colors_[slot] == color) {
                return indices_[slot];
            }
            slot = (slot + 1) % Slots;
        }
        if (table_.size() == PaletteSize) {
            return std::nullopt;
        }
        used_[slot] = true;
        colors_[slot] = color;
        indices_[slot] = static_cast<uchar>(table_.size());
        table_.push_back(color);
        return indices_[slot];
    }
    const QList<QRgb>& Table() const { return table_; }

private:
    static constexpr std::size_t Slots = 4 * PaletteSize;
    static std::size_t Hash(QRgb color) { return (color * 2654435761U >> 16) % Slots; }

    std::array<bool, Slots> used_{};
    std::array<QRgb, Slots> colors_{};
    std::array<uchar, Slots> indices_{};
    QList<QRgb> table_;
};

// The picture as palette indices, when it has no more colours than a palette holds.
std::optional<QImage> PaletteImage(const QImage& opaque) {
    QImage indexed(opaque.size(), QImage::Format_Indexed8);
    if (indexed.isNull()) {
        return std::nullopt;
    }
    ColorIndex index;
    // Runs of one colour are the rule: the last colour's index is kept at hand.
    QRgb last = opaque.pixel(0, 0);
    uchar lastIndex = *index.IndexOf(last);
    const auto width = static_cast<std::size_t>(opaque.width());
    for (int y = 0; y < opaque.height(); ++y) {
        const std::span source(reinterpret_cast<const QRgb*>(opaque.constScanLine(y)), width);
        const std::span target(indexed.scanLine(y), width);
        for (std::size_t x = 0; x < width; ++x) {
            const QRgb color = source[x];
            if (color != last) {
                const auto found = index.IndexOf(color);
                if (!found) {
                    return std::nullopt;
                }
                last = color;
                lastIndex = *found;
            }
            target[x] = lastIndex;
        }
    }
    indexed.setColorTable(index.Table());
    return indexed;
}

} // namespace

QByteArray PngBytes(const QImage& picture) {
    if (picture.isNull()) {
        return {};
    }
    // A picture with transparency is written as it stands.
    const QImage opaque = picture.hasAlphaChannel() || picture.format() == QImage::Format_RGB32
                              ? picture
                              : picture.convertToFormat(QImage::Format_RGB32);
    const std::optional<QImage> indexed =
        opaque.hasAlphaChannel() ? std::nullopt : PaletteImage(opaque);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "PNG");
    // Qt's PNG quality 70 is zlib level 2: a third of the default level's time on these
    // pictures, for files about half as large again.
    writer.setQuality(70);
    if (!writer.write(indexed ? *indexed : opaque)) {
        return {};
    }
    return bytes;
}

} // namespace torvane::render
