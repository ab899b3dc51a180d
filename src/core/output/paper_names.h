#pragma once
// The names under which the print dialog lists a printer's papers. A paper is known by its
// number, as the printer reports it; the name follows the number alone, so a printer's paper of
// a number beyond the table is not offered at all.

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::output {

// The number a printer gives a paper of its own size.
inline constexpr int UserPaperNumber = 256;
inline constexpr std::string_view UserPaperName = "User";
// The name of every number that is neither in the table nor the custom paper.
inline constexpr std::string_view NoPaperName = "Nothing";

// The name shown for a paper number.
std::string_view PaperNameOf(int number);

struct PaperEntry {
    int Number = 0;
    std::string Name;
    std::size_t Reported = 0; // where the printer's list had it
};

// The printer's papers in the printer's order, those named "Nothing" left out.
std::vector<PaperEntry> PaperListOf(std::span<const int> numbers);

// The table's number of a paper named on a command line: its whole name or the part before the
// comma ("A4", "Letter", "Envelope DL"), in any case, blanks around it ignored. The first of
// two equal short names wins.
std::optional<int> PaperNumberOf(std::string_view name);

// Every number of the table, in order: the papers a printer without a list of its own offers.
std::vector<int> TablePaperNumbers();

} // namespace torvane::output
