#include "output/paper_names.h"

#include <array>
#include <cctype>

namespace torvane::output {
namespace {

// Number 1 upward. Two entries end in a blank, as they are shown.
constexpr std::array<std::string_view, 38> TableNames{
    "Letter,8 1/2 x 11 ins.",
    "LetterSmall,8 1/2 x 11 ins.",
    "Tabloid,11 x 17 ins.",
    "Ledger,17 x 11 ins.",
    "Legal,8 1/2 x 14 ins.",
    "Statement,5 1/2 x 8 1/2 ins.",
    "Executive,7 1/2 x 10 1/2 ins.",
    "A3,297 x 420 mm",
    "A4,210 x 297 mm",
    "A4 Small,210 x 297 mm",
    "A5,148 x 210 mm",
    "B4,250 x 354 mm",
    "B5,182 x 257 mm",
    "Folio,8 1/2 x 13 ins.",
    "Quarto,215 x 275 mm",
    "10 x 14 ins. ",
    "11 x 17 ins. ",
    "Note,8 1/2 x 11 ins.",
    "Envelope  #9,3 7/8 x 8 7/8 ins.",
    "Envelope #10,4 1/8 x 9 1/2 ins.",
    "Envelope #11,4 1/2 x 10 3/8 ins.",
    "Envelope #12,4 1/2 x 11 ins.",
    "Envelope #14,5 x 11 1/2 ins.",
    "C Size Sheet",
    "D Size Sheet",
    "E Size Sheet",
    "Envelope DL,110 x 220 mm",
    "Envelope C3,324 x 458 mm",
    "Envelope C4,229 x 324 mm",
    "Envelope C5,162 x 229 mm",
    "Envelope C6,114 x 162 mm",
    "Envelope C65,114 x 229 mm",
    "Envelope B4,250 x 353 mm",
    "Envelope B5,176 x 250 mm",
    "Envelope B6,176 x 125 mm",
    "Envelope,110 x 230 mm",
    "Envelope Monarch,3 7/8 x 7 1/2 ins.",
    "Envelope,3 5/8 x 6 1/2 ins.",
};

std::string_view Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool SameIgnoringCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i]))) {
            return false;
        }
    }
    return true;
}

} // namespace

std::string_view PaperNameOf(int number) {
    if (number >= 1 && number <= static_cast<int>(TableNames.size())) {
        return TableNames[static_cast<std::size_t>(number - 1)];
    }
    return number == UserPaperNumber ? UserPaperName : NoPaperName;
}

std::vector<PaperEntry> PaperListOf(std::span<const int> numbers) {
    std::vector<PaperEntry> list;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const std::string_view name = PaperNameOf(numbers[i]);
        if (name != NoPaperName) {
            list.push_back({numbers[i], std::string(name), i});
        }
    }
    return list;
}

std::optional<int> PaperNumberOf(std::string_view name) {
    const std::string_view wanted = Trimmed(name);
    if (wanted.empty()) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < TableNames.size(); ++i) {
        const std::string_view whole = TableNames[i];
        const std::string_view shortName = Trimmed(whole.substr(0, whole.find(',')));
        if (SameIgnoringCase(wanted, Trimmed(whole)) || SameIgnoringCase(wanted, shortName)) {
            return static_cast<int>(i + 1);
        }
    }
    return std::nullopt;
}

std::vector<int> TablePaperNumbers() {
    std::vector<int> numbers;
    for (int number = 1; number <= static_cast<int>(TableNames.size()); ++number) {
        numbers.push_back(number);
    }
    return numbers;
}

} // namespace torvane::output
