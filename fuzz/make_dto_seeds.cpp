// Writes the seed corpus of fuzz_dto into the folder given on the command line: maps of both
// forms, with and without their second map, empty and full.

#include "views/dto_file.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

using namespace torvane::views;

void Write(const std::filesystem::path& file, const DetonationBytes& bytes, std::size_t size) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(size));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s SEED_FOLDER\n", argv[0]);
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    DetonationContent content;
    for (int i = 0; i < MapCells; ++i) {
        content.Maps[0][static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(i * 37 % 256);
        content.Maps[1][static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(i % 50);
    }
    content.RunTime = 16200;
    content.RunDistance = 420;
    content.Present = {true, true};
    Write(folder / "both.dto", EncodeDetonation(content), DetonationFileSize);
    Write(folder / "older.dto", EncodeDetonation(content), OlderDetonationFileSize);
    content.Present = {true, false};
    Write(folder / "first-only.dto", EncodeDetonation(content), DetonationFileSize);
    Write(folder / "empty.dto", EncodeDetonation({}), DetonationFileSize);
    DetonationBytes full{};
    full.fill(0xFF);
    Write(folder / "full.dto", full, DetonationFileSize);
    return 0;
}
