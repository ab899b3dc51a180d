// libFuzzer target of the detonation map reader: the input is written as a .dto file and read as
// the map window reads it.
//
// Beyond the sanitizers, the harness checks what the reader promises: only 805 and 807 bytes are
// read; the totals are the sums of the present maps' bytes; the labels and a press anywhere on
// the picture stay within the map; and a save writes back exactly the bytes that were read.

#include "shell/message_sink.h"
#include "views/detonation_map.h"
#include "views/dto_file.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;
using namespace torvane;

void Check(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "broken promise: %s\n", what);
        std::abort();
    }
}

const fs::path& Folder() {
    static const fs::path folder = [] {
        // In memory where the system offers it: every save flushes its file to the disk.
        std::error_code error;
        const fs::path base =
            fs::is_directory("/dev/shm", error) ? fs::path("/dev/shm") : fs::temp_directory_path();
        std::string pattern = (base / "fuzz-dto-XXXXXX").string();
        return fs::path(::mkdtemp(pattern.data()));
    }();
    static const bool removedAtExit = std::atexit([] {
                                          std::error_code ignored;
                                          fs::remove_all(Folder(), ignored);
                                      }) == 0;
    (void)removedAtExit;
    return folder;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fs::path file = Folder() / "input.dto";
    {
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    shell::RecordingSink sink;
    const auto state = views::LoadDetonationMap(views::DetonationSource::File, file, sink);
    const bool readable =
        size == views::DetonationFileSize || size == views::OlderDetonationFileSize;
    Check(state.has_value() == readable, "only the two lengths are read");
    Check(sink.Messages.size() == (readable ? 0u : 1u), "a refusal is told once");
    if (!state) {
        return 0;
    }
    for (std::size_t map = 0; map < views::MapCount; ++map) {
        std::int32_t sum = 0;
        for (int i = 0; i < views::MapCells; ++i) {
            sum += data[views::MapOffset(static_cast<int>(map)) + static_cast<std::size_t>(i)];
        }
        const bool present =
            size == views::OlderDetonationFileSize || data[views::PresenceOffset + map] != 0;
        Check(state->Present[map] == present, "presence as the bytes say");
        Check(state->Total[map] == (present ? sum : 0), "totals are the present maps' sums");
    }
    Check(state->RunTime <= 0xFFFFFF && state->RunDistance <= 0xFFFF, "numbers fit their bytes");
    views::LabelsOf(*state);
    for (int x = 0; x < views::PictureWidth; x += 7) {
        const int y = views::MapTop + (x * 13) % (views::MapBottom - views::MapTop);
        if (const auto readOut = views::ReadOutAt(*state, x, y)) {
            Check(readOut->Row >= 0 && readOut->Row < views::MapRows && readOut->Column >= 0 &&
                      readOut->Column < views::MapColumns,
                  "a read-out names a cell of the map");
        }
    }
    const fs::path saved = Folder() / "saved.dto";
    Check(views::SaveDetonationFile(*state, saved, sink), "a read map saves");
    views::DetonationBytes again{};
    std::error_code error;
    Check(views::ReadDtoFile(saved, again, error) == views::DtoReadResult::Read &&
              again == state->Bytes,
          "a save writes back what was read");
    return 0;
}
