// Writes the seed corpus of fuzz_laf_table: the table the program writes when there is none,
// and a few shapes of one edited by hand.

#include "logger/laf_table.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s SEED_FOLDER\n", argv[0]);
        return 2;
    }
    const std::string factory = torvane::logger::LafFileText(torvane::logger::DefaultLafPoints());
    const std::vector<std::string> seeds{
        factory,
        factory.substr(0, factory.size() / 2),
        "0.5,10.0\r\n1.0,12.5\r\n1.0,13.0\r\n4.5,20.0\r\n",
        "4.5,20\n0.5,10\n",
        "1e308,1e308\r\n-1e308,nan\r\n",
    };
    for (std::size_t i = 0; i < seeds.size(); ++i) {
        std::ofstream(std::filesystem::path(argv[1]) / ("seed-" + std::to_string(i)),
                      std::ios::binary)
            << seeds[i];
    }
    return 0;
}
