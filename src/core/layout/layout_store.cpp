#include "layout/layout_store.h"

#include "layout/default_layout.h"
#include "layout/file_image.h"

#include <algorithm>
#include <system_error>

namespace torvane::layout {
namespace fs = std::filesystem;
namespace {

constexpr const char* TemporaryFileName = "Layout.tmp";

graph::DisplaySet InitialLayout() {
    graph::DisplaySet record = DefaultLayout();
    record.Name = InitialLayoutName;
    return record;
}

std::span<std::uint8_t, LayoutHeadSize> HeadOf(std::vector<std::uint8_t>& image) {
    return std::span<std::uint8_t, LayoutHeadSize>(image.data(), LayoutHeadSize);
}

std::span<std::uint8_t, LayoutRecordSize> RecordOf(std::vector<std::uint8_t>& image,
                                                   std::size_t index) {
    return std::span<std::uint8_t, LayoutRecordSize>(image.data() + RecordOffset(index),
                                                     LayoutRecordSize);
}

// Records the store reads from a file of this length: whole records, at most eleven.
std::size_t ReadableRecords(std::size_t fileLength) {
    return static_cast<std::size_t>(std::min<std::int64_t>(RecordCount(fileLength), MaxLayouts));
}

bool HasWholeRecords(std::size_t fileLength) {
    return fileLength < LayoutHeadSize || (fileLength - LayoutHeadSize) % LayoutRecordSize == 0;
}

} // namespace

std::vector<std::uint8_t> FactoryLayoutFile() {
    std::vector<std::uint8_t> image(RecordOffset(1));
    EncodeLayoutHead(FactoryToolBox, HeadOf(image));
    EncodeLayoutRecord(InitialLayout(), RecordOf(image, 0));
    return image;
}

LayoutStore::LayoutStore(const shell::AppPaths& paths, shell::MessageSink& sink)
    : initDir_(paths.InitDir())
    , sink_(sink)
    , layouts_{InitialLayout()} {
}

fs::path LayoutStore::FilePath() const {
    return initDir_ / LayoutFileName;
}

fs::path LayoutStore::LayoutFilePath() {
    std::error_code error;
    if (fs::exists(FilePath(), error) || CreateLayoutFile()) {
        return FilePath();
    }
    return {};
}

bool LayoutStore::CreateLayoutFile() {
    return WriteLayoutFile(FactoryLayoutFile());
}

std::optional<std::vector<std::uint8_t>> LayoutStore::ReadLayoutFile() {
    const fs::path file = LayoutFilePath();
    if (file.empty()) {
        return std::nullopt;
    }
    FileFailure failure;
    // Records past the eleventh are never shown, so they are not read either.
    auto image = ReadFileImage(file, RecordOffset(MaxLayouts), failure);
    if (!image) {
        shell::ShowRunTimeError(sink_, DescribeFailure(failure));
    }
    return image;
}

bool LayoutStore::WriteLayoutFile(const std::vector<std::uint8_t>& image) {
    FileFailure failure;
    if (!ReplaceFileImage(FilePath(), initDir_ / TemporaryFileName, image, failure)) {
        shell::ShowRunTimeError(sink_, DescribeFailure(failure));
        return false;
    }
    return true;
}

void LayoutStore::Rebuild(const std::vector<std::uint8_t>& image) {
    std::vector<std::uint8_t> head(
        image.begin(),
        image.begin() + static_cast<std::ptrdiff_t>(std::min(image.size(), LayoutHeadSize)));
    head.resize(LayoutHeadSize); // a file shorter than its head reads as zeros
    toolBox_ = DecodeLayoutHead(std::span<const std::uint8_t, LayoutHeadSize>(head));

    layouts_.clear();
    const std::size_t count = ReadableRecords(image.size());
    for (std::size_t index = 0; index < count; ++index) {
        graph::DisplaySet record =
            DecodeLayoutRecord(std::span<const std::uint8_t, LayoutRecordSize>(
                image.data() + RecordOffset(index), LayoutRecordSize));
        RepairLayout(record);
        layouts_.push_back(std::move(record));
    }
    KeepRecordZero();
}

// A window always starts from record 0, so a store that could not read one keeps the factory
// display there.
void LayoutStore::KeepRecordZero() {
    if (layouts_.empty()) {
        layouts_.push_back(InitialLayout());
    }
}

bool LayoutStore::LoadLayouts() {
    auto image = ReadLayoutFile();
    if (!image) {
        return false;
    }
    if (!HasWholeRecords(image->size())) {
        if (!CreateLayoutFile()) {
            return false;
        }
        image = FactoryLayoutFile();
    }
    Rebuild(*image);
    return true;
}

bool LayoutStore::SaveLayout(std::string_view name) {
    auto image = ReadLayoutFile();
    if (!image) {
        return false;
    }
    // A full file takes a new name in its last record.
    const std::size_t records =
        std::min<std::size_t>(static_cast<std::size_t>(RecordCount(image->size())), MaxLayouts - 1);
    std::size_t slot = records;
    // Record 0 is never a named layout, even when it carries the name asked for.
    for (std::size_t index = 1; index < layouts_.size(); ++index) {
        if (layouts_[index].Name == name) {
            slot = index;
            break;
        }
    }
    image->resize(std::max(image->size(), RecordOffset(slot + 1)));
    graph::DisplaySet record = pending_;
    record.Name = std::string(name);
    EncodeLayoutRecord(record, RecordOf(*image, slot));
    if (!WriteLayoutFile(*image)) {
        return false;
    }
    LoadLayouts();
    return true;
}

bool LayoutStore::DeleteLayout(int index) {
    auto image = ReadLayoutFile();
    if (!image) {
        return false;
    }
    const std::size_t count = ReadableRecords(image->size());
    if (index < 0 || static_cast<std::size_t>(index) >= count) {
        return false;
    }
    std::vector<std::uint8_t> kept(RecordOffset(0));
    std::copy_n(image->begin(), std::min(image->size(), LayoutHeadSize), kept.begin());
    for (std::size_t record = 0; record < count; ++record) {
        if (record != static_cast<std::size_t>(index)) {
            const auto from = image->begin() + static_cast<std::ptrdiff_t>(RecordOffset(record));
            kept.insert(kept.end(), from, from + LayoutRecordSize);
        }
    }
    if (!WriteLayoutFile(kept)) {
        return false;
    }
    Rebuild(kept);
    return true;
}

bool LayoutStore::SaveLastLayout(const ToolBoxPlace& toolBox) {
    auto image = ReadLayoutFile();
    if (!image) {
        return false;
    }
    image->resize(std::max(image->size(), RecordOffset(1)));
    EncodeLayoutHead(toolBox, HeadOf(*image));
    EncodeLayoutRecord(layouts_.front(), RecordOf(*image, 0));
    return WriteLayoutFile(*image);
}

std::vector<std::string> LayoutStore::GetLayoutNames() const {
    std::vector<std::string> names;
    for (const graph::DisplaySet& record : layouts_) {
        names.push_back(record.Name);
    }
    return names;
}

bool LayoutStore::GetLayout(int index, graph::DisplaySet& record) const {
    if (index < 0 || index >= Count()) {
        return false;
    }
    record = layouts_[static_cast<std::size_t>(index)];
    return true;
}

bool LayoutStore::SetLayout(int index, const graph::DisplaySet& display,
                            const graph::TimeScale& time) {
    if (index < 0 || index >= Count()) {
        return false;
    }
    graph::DisplaySet& record = layouts_[static_cast<std::size_t>(index)];
    record.Items = display.Items;
    record.Time = time;
    return true;
}

void LayoutStore::SetPendingLayout(const graph::DisplaySet& display, const graph::TimeScale& time) {
    pending_.Items = display.Items;
    pending_.Time = time;
}

} // namespace torvane::layout
