#include "layout/layout_file.h"

#include "shell/common.h"

#include "byte_order.h"

#include <algorithm>

namespace torvane::layout {
namespace {

// Little-endian field writer and reader over a fixed record.
class FieldWriter {
public:
    explicit FieldWriter(std::span<std::uint8_t> out)
        : out_(out) {}
    void Byte(std::uint8_t value) { out_[at_++] = value; }
    void Word16(std::int16_t value) { Put(value); }
    void Word32(std::int32_t value) { Put(value); }
    void Bytes(std::span<const std::uint8_t> bytes, std::size_t size) {
        std::fill_n(out_.begin() + static_cast<std::ptrdiff_t>(at_), size, std::uint8_t{0});
        std::copy_n(bytes.begin(), std::min(size, bytes.size()),
                    out_.begin() + static_cast<std::ptrdiff_t>(at_));
        at_ += size;
    }

private:
    template <std::integral Value> void Put(Value value) {
        PutLittleEndian(out_, at_, value);
        at_ += sizeof(Value);
    }
    std::span<std::uint8_t> out_;
    std::size_t at_ = 0;
};

class FieldReader {
public:
    explicit FieldReader(std::span<const std::uint8_t> bytes)
        : bytes_(bytes) {}
    std::uint8_t Byte() { return bytes_[at_++]; }
    std::int16_t Word16() { return Get<std::int16_t>(); }
    std::int32_t Word32() { return Get<std::int32_t>(); }
    std::span<const std::uint8_t> Bytes(std::size_t size) {
        const auto bytes = bytes_.subspan(at_, size);
        at_ += size;
        return bytes;
    }

private:
    template <std::integral Value> Value Get() {
        const auto value = GetLittleEndian<Value>(bytes_, at_);
        at_ += sizeof(Value);
        return value;
    }
    std::span<const std::uint8_t> bytes_;
    std::size_t at_ = 0;
};

bool IsContinuationByte(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

} // namespace

void EncodeLayoutHead(const ToolBoxPlace& toolBox, std::span<std::uint8_t, LayoutHeadSize> out) {
    FieldWriter writer(out);
    writer.Word32(toolBox.Shown ? 1 : 0);
    writer.Word32(toolBox.Top);
    writer.Word32(toolBox.Left);
}

ToolBoxPlace DecodeLayoutHead(std::span<const std::uint8_t, LayoutHeadSize> bytes) {
    FieldReader reader(bytes);
    ToolBoxPlace toolBox;
    toolBox.Shown = reader.Word32() == 1;
    toolBox.Top = reader.Word32();
    toolBox.Left = reader.Word32();
    return toolBox;
}

void EncodeLayoutRecord(const graph::DisplaySet& record,
                        std::span<std::uint8_t, LayoutRecordSize> out) {
    FieldWriter writer(out);
    for (const graph::ItemDisplay& item : record.Items) {
        writer.Byte(item.View);
        writer.Byte(item.Color);
        writer.Byte(item.Line);
        writer.Byte(item.Point);
        writer.Byte(item.Grid);
        writer.Byte(item.Zoom);
        writer.Word16(item.Top);
        writer.Word16(item.Bottom);
        writer.Word32(item.Max);
        writer.Word32(item.Min);
    }
    writer.Word16(record.Time.PixelsPerStep);
    writer.Word32(record.Time.MsPerGrid);
    writer.Word32(record.Time.MsPerStep);
    const std::string name = StoredLayoutName(record.Name);
    writer.Bytes({reinterpret_cast<const std::uint8_t*>(name.data()), name.size()}, LayoutNameSize);
}

graph::DisplaySet DecodeLayoutRecord(std::span<const std::uint8_t, LayoutRecordSize> bytes) {
    FieldReader reader(bytes);
    graph::DisplaySet record;
    for (graph::ItemDisplay& item : record.Items) {
        item.View = reader.Byte();
        item.Color = reader.Byte();
        item.Line = reader.Byte();
        item.Point = reader.Byte();
        item.Grid = reader.Byte();
        item.Zoom = reader.Byte();
        item.Top = reader.Word16();
        item.Bottom = reader.Word16();
        item.Max = reader.Word32();
        item.Min = reader.Word32();
    }
    record.Time.PixelsPerStep = reader.Word16();
    record.Time.MsPerGrid = reader.Word32();
    record.Time.MsPerStep = reader.Word32();
    record.Name = TrimBlanks(shell::BytesToString(reader.Bytes(LayoutNameSize)));
    return record;
}

std::string TrimBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    const auto last = text.find_last_not_of(' ');
    return std::string(text.substr(first, last - first + 1));
}

std::string StoredLayoutName(std::string_view name) {
    if (name.size() <= LayoutNameSize) {
        return std::string(name);
    }
    std::size_t size = LayoutNameSize;
    // Back off to the first byte of the character that the cut falls into.
    while (size > 0 && IsContinuationByte(name[size])) {
        --size;
    }
    return std::string(name.substr(0, size));
}

std::int64_t RecordCount(std::uintmax_t fileLength) {
    if (fileLength < LayoutHeadSize) {
        return 0;
    }
    return static_cast<std::int64_t>((fileLength - LayoutHeadSize) / LayoutRecordSize);
}

} // namespace torvane::layout
