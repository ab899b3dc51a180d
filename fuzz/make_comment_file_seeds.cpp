// Writes the seed corpus of fuzz_comment_file: side files written by the program itself, with
// plain, escaped and longest texts, and an empty one.

#include "graph/comment_list.h"
#include "load/comment_file.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    using namespace torvane;
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s SEED_FOLDER\n", argv[0]);
        return 2;
    }
    const auto comment = [](std::string text, std::int32_t time, std::int16_t channel) {
        graph::CommentRecord record;
        record.Free = 0;
        record.OffsetX = 40;
        record.OffsetY = -40;
        record.Channel = channel;
        record.Slot = 0;
        record.Time = time;
        record.Value = 10000;
        record.Text = std::move(text);
        return record;
    };
    const std::vector<std::vector<graph::CommentRecord>> files{
        {},
        {comment("Brake late", 3000, 0)},
        {comment("a\\b \"c\" 100%", 1, 1), comment(std::string(40, 'x'), 2147483647, 13)},
    };
    for (std::size_t i = 0; i < files.size(); ++i) {
        std::ofstream(std::filesystem::path(argv[1]) / ("seed-" + std::to_string(i)),
                      std::ios::binary)
            << load::EncodeCommentFile(files[i]);
    }
    return 0;
}
