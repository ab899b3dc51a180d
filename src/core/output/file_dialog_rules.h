#pragma once
// The rules of the program's own file dialog, without its widgets: the job of each mode (caption
// and file types), what a typed name becomes, which keys the name box takes, and what OK does.
// The dialog is modal and opened for one answer; only the last folder and file name outlive it.

#include "shell/message_sink.h"

#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace torvane::output {

enum class FileDialogMode {
    LoadLoggingFile = 1,
    SaveLoggingFile = 2, // also the CSV export of a graph window
    LoadDetonationFile = 3,
    SaveDetonationFile = 4,
    SaveSpecialData = 5,
    SaveErrorCode = 6,
    SavePdfFile = 7, // the "PDF file" printer of the print dialog
};

struct FileDialogRequest {
    FileDialogMode Mode = FileDialogMode::LoadLoggingFile;
    bool CsvRange = false; // a range is marked, so the export of the range only may be chosen
};

struct FileDialogResult {
    bool Cancel = true;
    std::filesystem::path Filepath;
    bool CsvAllItem = false; // every item of the file, not only those shown
    bool CsvRange = false;   // only the marked range
};

// What the dialog keeps between two openings; the desktop holds one for the process.
struct FileDialogMemory {
    std::filesystem::path LastFolder;
    std::string LastFileName;
};

inline constexpr std::string_view OverwriteQuestion = "Already exists.Overwrite? ";

// The caption of the dialog in a mode.
std::string_view CaptionOf(FileDialogMode mode);
// The entries of the type box in a mode, the first one chosen at opening.
std::span<const std::string_view> TypesOf(FileDialogMode mode);

// The pattern of a type entry: the text between "(" and ")", "*.csv" for "Csv Files (*.csv)".
std::string PatternOf(std::string_view type);
// The extension of a type entry: from after its first "*" up to the ")", trimmed: ".csv".
std::string ExtensionOf(std::string_view type);
// The CSV options are offered only while the CSV type is chosen.
bool OffersCsvOptions(std::string_view pattern);

// The name put into the name box when the dialog opens: the last name in mode 2 when it is a
// logging file, the last name as it is in mode 4, else nothing.
std::string InitialFileName(FileDialogMode mode, std::string_view lastFileName);

// The folder the dialog opens on: the last folder while it still exists, else the data folder.
std::filesystem::path StartFolder(const FileDialogMemory& memory,
                                  const std::filesystem::path& dataDir);

// Whether the name box takes a typed character. Separators, wildcards and the dot are dropped,
// so a typed name has neither a path nor an extension of its own.
bool FileNameKeyPasses(char32_t key);

// The rule of the extension: a name without a "." gets the chosen type's extension ("abc" with
// the CSV type is "abc.csv"); a name that has one, such as one picked from the list, keeps it.
std::string CompleteFileName(std::string_view name, std::string_view type);

// What the dialog holds when OK is pressed.
struct OkPress {
    FileDialogMode Mode = FileDialogMode::LoadLoggingFile;
    std::filesystem::path Folder;
    std::string TypedName;    // the name box as it stands
    std::string SelectedName; // the selected list entry, empty when none
    std::string Type;         // the chosen entry of the type box
    bool DisplayedItemTicked = false;
    bool SelectionRangeTicked = false;
};

// OK: completes the name and keeps the folder in memory; in the save modes that ask, asks
// before overwriting an existing file (through the sink) and then keeps the name as well. Gives
// the answer. Cancel is left true when the dialog stays open: no name, or the overwrite refused.
// A load mode never checks that the file exists.
FileDialogResult PressOk(const OkPress& press, FileDialogMemory& memory, shell::MessageSink& sink);

} // namespace torvane::output
