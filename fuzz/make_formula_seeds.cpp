// Seeds for fuzz_formula: formulas that reach each rule of the conversion.

#include <array>
#include <filesystem>
#include <fstream>
#include <string_view>

int main(int argc, char** argv) {
    if (argc < 2) {
        return 1;
    }
    constexpr std::array<std::string_view, 10> formulas{"Ne*TH/100+sqrt(VFW)",
                                                        "-ne",
                                                        "2*(-3)",
                                                        "ne-th*vfw-deto1",
                                                        "a)+(b",
                                                        "ne+th)*(vfw",
                                                        "s i n ( n e )",
                                                        "asin(0.5)+acos(.5)*tan(2e3)",
                                                        "((lap))",
                                                        "frsus/-1"};
    const std::filesystem::path folder = argv[1];
    for (std::size_t i = 0; i < formulas.size(); ++i) {
        std::ofstream(folder / ("formula" + std::to_string(i)), std::ios::binary) << formulas[i];
    }
    return 0;
}
