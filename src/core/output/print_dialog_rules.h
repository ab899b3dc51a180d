#pragma once
// The rules of the print dialog (frmCom0020) without its widgets: which printers it lists, what
// it remembers between openings, and the checks of the copies and zoom boxes before a print.

#include <string>
#include <string_view>

namespace torvane::output {

inline constexpr std::string_view PrintDialogCaption = "Print Dialog ";
// Both boxes take this many characters.
inline constexpr int PrintEntryLength = 3;
inline constexpr int MinZoom = 50;
inline constexpr int MaxZoom = 200;

// Printers whose names begin with "Rendering Subsystem" are not offered.
bool ListsPrinter(std::string_view name);

// What the dialog keeps for its next opening in the same run. Until the first print the
// dialog takes the default printer and its settings.
struct PrintDialogMemory {
    bool Kept = false;
    int PrinterIndex = 0;
    int PaperIndex = 0;
    bool Landscape = false;
    std::string Copies = "1";
    std::string Zoom = "100";
};

// Which box a refusal sends the focus to.
enum class PrintEntry { Copies, Zoom };

// The boxes checked in order; the first refusal gives its message (shown with the warning
// icon) and the box, a pass gives the values.
struct PrintEntryCheck {
    bool Passed = false;
    std::string_view Message;
    PrintEntry Focus = PrintEntry::Copies;
    int Copies = 0;
    int Zoom = 0;
};
PrintEntryCheck CheckPrintEntries(std::string_view copies, std::string_view zoom);

} // namespace torvane::output
