// The .dto format, its numbers and work files, and the map window's model: reading, labels,
// cells, read-out, saving.

#include "support/hostile_files.h"
#include "support/temp_folder.h"
#include "views/detonation_map.h"
#include "views/dto_file.h"

#include <gtest/gtest.h>

#include <fstream>

namespace torvane::views {
namespace {

using torvane::testing::TempFolder;
using torvane::testing::WriteText;

std::vector<std::uint8_t> BytesOf(std::int64_t value, std::size_t count) {
    std::vector<std::uint8_t> bytes(count, 0xAA);
    LongToBytes(value, bytes);
    return bytes;
}

TEST(DtoNumbers, LongToBytesKeepsTheHighDigitsAndBytesToLongJoinsHighestFirst) {
    struct Case {
        std::int64_t Value;
        std::size_t Bytes;
        std::vector<std::uint8_t> Expected;
    };
    const std::vector<Case> cases{
        {0, 3, {0, 0, 0}},
        {5, 3, {0, 0, 5}},
        {16200, 3, {0x00, 0x3F, 0x48}},
        {0x123456, 3, {0x12, 0x34, 0x56}},
        // Too long for the bytes: the high digit pairs stay, counted from the left.
        {0x1234567, 3, {0x12, 0x34, 0x56}},
        {0x12345, 2, {0x12, 0x34}},
        {65535, 2, {0xFF, 0xFF}},
        {-1, 2, {0xFF, 0xFF}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(BytesOf(c.Value, c.Bytes), c.Expected) << c.Value;
    }
    EXPECT_EQ(BytesToLong(std::vector<std::uint8_t>{0xFF, 0xFF, 0xFF}), 16777215u);
    EXPECT_EQ(BytesToLong(std::vector<std::uint8_t>{0x01, 0x02}), 0x0102u);
}

DetonationBytes SampleBytes() {
    DetonationContent content;
    content.Maps[0][0] = 7; // row 0, column 0
    content.Maps[0][19 * 20 + 19] = 255;
    content.Maps[1][3 * 20 + 4] = 12;
    content.RunTime = 3725;
    content.RunDistance = 1234;
    content.Present = {true, true};
    return EncodeDetonation(content);
}

void WriteBytes(const std::filesystem::path& file, std::span<const std::uint8_t> bytes) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
}

TEST(DtoFile, OnlyTheTwoLengthsAreReadAndTheOlderOneHasBothMaps) {
    TempFolder folder;
    const DetonationBytes sample = SampleBytes();
    for (const std::size_t length : {0u, 1u, 804u, 805u, 806u, 807u, 808u, 5000u}) {
        std::vector<std::uint8_t> bytes(length, 0);
        std::copy_n(sample.begin(), std::min(length, sample.size()), bytes.begin());
        if (length == 805) {
            bytes.resize(805);
        }
        const auto file = folder / ("len" + std::to_string(length) + ".dto");
        WriteBytes(file, bytes);
        DetonationBytes read{};
        std::error_code error;
        const DtoReadResult result = ReadDtoFile(file, read, error);
        if (length == 805 || length == 807) {
            ASSERT_EQ(result, DtoReadResult::Read) << length;
            EXPECT_TRUE(std::equal(read.begin(), read.begin() + 805, sample.begin()));
            EXPECT_EQ(read[805], 1);
            EXPECT_EQ(read[806], 1);
        } else {
            EXPECT_EQ(result, DtoReadResult::WrongLength) << length;
        }
    }
    DetonationBytes read{};
    std::error_code error;
    EXPECT_EQ(ReadDtoFile(folder / "none.dto", read, error), DtoReadResult::NotFound);
    std::filesystem::create_directory(folder / "x.dto");
    EXPECT_EQ(ReadDtoFile(folder / "x.dto", read, error), DtoReadResult::Unreadable);
    int made = 0;
    for (const auto& hostile : torvane::testing::HostileFiles()) {
        const auto file = folder / ("hostile" + std::to_string(++made) + ".dto");
        ASSERT_TRUE(hostile.Make(file)) << hostile.Kind;
        EXPECT_EQ(ReadDtoFile(file, read, error), DtoReadResult::Unreadable) << hostile.Kind;
    }
}

TEST(DtoFile, WorkFilesTakeTheNumberAfterTheHighestWellFormedOne) {
    TempFolder folder;
    EXPECT_EQ(GetDetonationFileName(folder.Path()).filename(), "DETO0001.dto");
    for (const char* name :
         {"DETO0012.dto", "DETO0003.dto", "DETOabcd.dto", "DETO12.dto", "DETO99999.dto"}) {
        WriteText(folder / name, "");
    }
    EXPECT_EQ(GetDetonationFileName(folder.Path()).filename(), "DETO0013.dto");
}

class DetonationWindowModel : public ::testing::Test {
protected:
    std::optional<DetonationMapState> Load(std::span<const std::uint8_t> bytes,
                                           DetonationSource source = DetonationSource::File) {
        const auto file = folder / "map.dto";
        WriteBytes(file, bytes);
        return LoadDetonationMap(source, file, sink);
    }

    TempFolder folder;
    shell::RecordingSink sink;
};

TEST_F(DetonationWindowModel, RefusedFilesTellTheOperatorWithTheInformationIcon) {
    struct Case {
        std::string Name;
        std::function<void(const std::filesystem::path&)> Make;
        std::string Text;
        int Icon;
    };
    const std::vector<Case> cases{
        {"missing.dto", [](const auto&) {}, "File not found.", shell::icons::Information},
        {"short.dto", [](const auto& file) { WriteText(file, std::string(806, '\0')); },
         "Error detonation map data.", shell::icons::Information},
        {"folder.dto", [](const auto& file) { std::filesystem::create_directory(file); },
         "Error(75)\rPath/File access error: ", shell::icons::Stop},
    };
    for (const Case& c : cases) {
        sink.Messages.clear();
        const auto file = folder / c.Name;
        c.Make(file);
        EXPECT_FALSE(LoadDetonationMap(DetonationSource::File, file, sink)) << c.Name;
        ASSERT_EQ(sink.Messages.size(), 1u) << c.Name;
        EXPECT_TRUE(sink.Messages[0].Text.starts_with(c.Text)) << sink.Messages[0].Text;
        EXPECT_EQ(sink.Messages[0].Icon, c.Icon);
    }
}

TEST_F(DetonationWindowModel, CountsTotalsLabelsAndAMissingMap) {
    DetonationBytes bytes = SampleBytes();
    bytes[806] = 0; // map 2 not recorded
    const auto state = Load(bytes);
    ASSERT_TRUE(state);
    EXPECT_EQ(state->Counts[0][0][0], 7);
    EXPECT_EQ(state->Counts[0][19][19], 255);
    EXPECT_EQ(state->Counts[1][3][4], 0); // an absent map is not read
    EXPECT_EQ(state->Total[0], 262);
    EXPECT_EQ(state->RunTime, 3725);
    EXPECT_EQ(state->RunDistance, 1234);
    const DetonationLabels labels = LabelsOf(*state);
    EXPECT_EQ(labels.RunDistance, "1,234");
    EXPECT_EQ(labels.RunTime, "001H02M05S");
    EXPECT_EQ(labels.Total[0], "262");
    EXPECT_EQ(labels.PerKm[0], "0.21");
    EXPECT_EQ(labels.Total[1], "");
    EXPECT_EQ(labels.PerKm[1], "");

    // Without a distance the share per km reads 0.
    bytes[803] = bytes[804] = 0;
    EXPECT_EQ(LabelsOf(*Load(bytes)).PerKm[0], "0");
}

TEST_F(DetonationWindowModel, ThePressReadsTheCellPaintedThereExceptOnLinesAndAbsentMaps) {
    DetonationBytes bytes = SampleBytes();
    bytes[805] = 0; // map 1 absent
    const auto state = Load(bytes);
    ASSERT_TRUE(state);
    // The middle of the cell (3, 4) of map 2, as painted.
    const CellPlace cell = CellPlaceOf(1, 3, 4);
    const auto readOut = ReadOutAt(*state, cell.X + 3, cell.Y + 3);
    ASSERT_TRUE(readOut);
    EXPECT_EQ(readOut->Map, 1);
    EXPECT_EQ(readOut->Row, 3);
    EXPECT_EQ(readOut->Column, 4);
    EXPECT_EQ(readOut->Part[1], "12");
    EXPECT_FALSE(readOut->Part[0]); // the absent map's label stays as it is
    EXPECT_EQ(readOut->Ne, "6500-7000");
    EXPECT_EQ(readOut->Th, "20-25");

    struct Miss {
        int X, Y;
    };
    for (const Miss miss :
         {Miss{220 + 14, 200}, Miss{220 + 75, 200}, Miss{230, 255 - 30}, Miss{230, 101},
          Miss{230, 255}, Miss{219, 200}, Miss{370, 200}, Miss{40, 200} /* map 1 absent */}) {
        EXPECT_FALSE(ReadOutAt(*state, miss.X, miss.Y)) << miss.X << "," << miss.Y;
    }
    // Every cell of the first column and row is found again at its painted middle.
    for (int i = 0; i < 20; ++i) {
        const CellPlace row = CellPlaceOf(1, i, 0);
        const CellPlace column = CellPlaceOf(1, 0, i);
        EXPECT_EQ(ReadOutAt(*state, row.X + 3, row.Y + 3)->Row, i) << i;
        EXPECT_EQ(ReadOutAt(*state, column.X + 3, column.Y + 3)->Column, i) << i;
    }
}

TEST(DetonationPicture, CellPlacesAndCountBands) {
    EXPECT_EQ(CellPlaceOf(0, 0, 0).X, 33);
    EXPECT_EQ(CellPlaceOf(0, 0, 0).Y, 248);
    EXPECT_EQ(CellPlaceOf(1, 19, 19).X, 220 + 133 + 9 + 1);
    EXPECT_EQ(CellPlaceOf(1, 19, 19).Y, 248 - (133 + 9 + 4));
    struct Case {
        int Count, Top;
        std::uint32_t Rgb;
    };
    for (const Case c : {Case{0, 70, 0xFFFFFF}, Case{1, 63, 0x004284}, Case{5, 63, 0x004284},
                         Case{6, 56, 0x4200FF}, Case{25, 35, 0x008400}, Case{45, 7, 0xFF0000},
                         Case{46, 0, 0x000000}, Case{255, 0, 0x000000}}) {
        EXPECT_EQ(CountBandOf(c.Count).Top, c.Top) << c.Count;
        EXPECT_EQ(CountBandOf(c.Count).Rgb, c.Rgb) << c.Count;
    }
}

TEST_F(DetonationWindowModel, SavingWritesTheKeptBytesAndWorkFilesGoWithTheWindow) {
    const DetonationBytes sample = SampleBytes();
    const auto older = Load(std::span(sample).first(805));
    ASSERT_TRUE(older);
    const auto saved = folder / "saved.dto";
    ASSERT_TRUE(SaveDetonationFile(*older, saved, sink));
    DetonationBytes read{};
    std::error_code error;
    ASSERT_EQ(ReadDtoFile(saved, read, error), DtoReadResult::Read);
    EXPECT_EQ(std::filesystem::file_size(saved), 807u);
    EXPECT_EQ(read, sample); // both presence bytes as the read forced them

    // A folder that is not there: told, and nothing left behind.
    EXPECT_FALSE(SaveDetonationFile(*older, folder / "gone" / "x.dto", sink));
    ASSERT_EQ(sink.Messages.size(), 1u);
    EXPECT_EQ(sink.Messages[0].Icon, shell::icons::Stop);

    ReleaseDetonationFile(*older); // the operator's own file stays
    EXPECT_TRUE(std::filesystem::exists(older->Path));
    const auto work = Load(sample, DetonationSource::Logger);
    ReleaseDetonationFile(*work);
    EXPECT_FALSE(std::filesystem::exists(work->Path));
}

} // namespace
} // namespace torvane::views
