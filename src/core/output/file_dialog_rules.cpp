#include "output/file_dialog_rules.h"

#include <array>

namespace torvane::output {
namespace {

constexpr std::string_view LoggingFiles = "Logging Files (*.rlg)";
constexpr std::string_view CsvFiles = "Csv Files (*.csv)";
constexpr std::array<std::string_view, 1> LoggingTypes{LoggingFiles};
constexpr std::array<std::string_view, 2> SaveLoggingTypes{LoggingFiles, CsvFiles};
constexpr std::array<std::string_view, 1> DetonationTypes{"Deto Map Files (*.dto)"};
constexpr std::array<std::string_view, 1> SpecialDataTypes{"Special Data Files (*.spd)"};
constexpr std::array<std::string_view, 1> ErrorCodeTypes{"Error Code Files (*.err)"};
constexpr std::array<std::string_view, 1> PdfTypes{"Pdf Files (*.pdf)"};

constexpr std::string_view DroppedNameKeys = "\\/.:;<>|\"?!*";
constexpr std::string_view Blanks = " \t";

std::string_view Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

std::string UpperAscii(std::string_view text) {
    std::string upper(text);
    for (char& c : upper) {
        if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - 'a' + 'A');
        }
    }
    return upper;
}

bool RemembersName(FileDialogMode mode) {
    return mode == FileDialogMode::SaveLoggingFile || mode == FileDialogMode::SaveDetonationFile;
}

bool AsksBeforeOverwrite(FileDialogMode mode) {
    return RemembersName(mode) || mode == FileDialogMode::SavePdfFile;
}

} // namespace

std::string_view CaptionOf(FileDialogMode mode) {
    switch (mode) {
    case FileDialogMode::LoadLoggingFile:
        return "Load Logging File";
    case FileDialogMode::SaveLoggingFile:
        return "Save Logging File";
    case FileDialogMode::LoadDetonationFile:
        return "Load Detonation File";
    case FileDialogMode::SaveDetonationFile:
        return "Save Detonation File";
    case FileDialogMode::SaveSpecialData:
        return "Save Special Data";
    case FileDialogMode::SaveErrorCode:
        return "Save Error Code";
    case FileDialogMode::SavePdfFile:
        return "Save PDF File";
    }
    return {};
}

std::span<const std::string_view> TypesOf(FileDialogMode mode) {
    switch (mode) {
    case FileDialogMode::LoadLoggingFile:
        return LoggingTypes;
    case FileDialogMode::SaveLoggingFile:
        return SaveLoggingTypes;
    case FileDialogMode::LoadDetonationFile:
    case FileDialogMode::SaveDetonationFile:
        return DetonationTypes;
    case FileDialogMode::SaveSpecialData:
        return SpecialDataTypes;
    case FileDialogMode::SaveErrorCode:
        return ErrorCodeTypes;
    case FileDialogMode::SavePdfFile:
        return PdfTypes;
    }
    return {};
}

std::string PatternOf(std::string_view type) {
    const auto open = type.find('(');
    const auto close = type.find(')', open == std::string_view::npos ? 0 : open);
    if (open == std::string_view::npos || close == std::string_view::npos) {
        return {};
    }
    return std::string(type.substr(open + 1, close - open - 1));
}

std::string ExtensionOf(std::string_view type) {
    const auto star = type.find('*');
    if (star == std::string_view::npos) {
        return {};
    }
    const auto close = type.find(')', star);
    const auto end = close == std::string_view::npos ? type.size() : close;
    return std::string(Trimmed(type.substr(star + 1, end - star - 1)));
}

bool OffersCsvOptions(std::string_view pattern) {
    return pattern == "*.csv";
}

std::string InitialFileName(FileDialogMode mode, std::string_view lastFileName) {
    if (mode == FileDialogMode::SaveLoggingFile && UpperAscii(lastFileName).ends_with("RLG")) {
        return std::string(lastFileName);
    }
    if (mode == FileDialogMode::SaveDetonationFile) {
        return std::string(lastFileName);
    }
    return {};
}

std::filesystem::path StartFolder(const FileDialogMemory& memory,
                                  const std::filesystem::path& dataDir) {
    std::error_code error;
    if (!memory.LastFolder.empty() && std::filesystem::is_directory(memory.LastFolder, error)) {
        return memory.LastFolder;
    }
    return dataDir;
}

bool FileNameKeyPasses(char32_t key) {
    return key > 0x7f || DroppedNameKeys.find(static_cast<char>(key)) == std::string_view::npos;
}

std::string CompleteFileName(std::string_view name, std::string_view type) {
    if (name.find('.') != std::string_view::npos) {
        return std::string(name);
    }
    return std::string(name) + ExtensionOf(type);
}

FileDialogResult PressOk(const OkPress& press, FileDialogMemory& memory, shell::MessageSink& sink) {
    std::string_view name = Trimmed(press.TypedName);
    if (name.empty()) {
        name = press.SelectedName;
    }
    if (name.empty()) {
        return {};
    }
    const std::string fileName = CompleteFileName(name, press.Type);
    memory.LastFolder = press.Folder;
    const std::filesystem::path path = press.Folder / fileName;
    if (AsksBeforeOverwrite(press.Mode)) {
        std::error_code error;
        if (std::filesystem::exists(path, error) &&
            shell::ShowMessage(sink, OverwriteQuestion, shell::buttons::YesNo,
                               shell::icons::Information) != shell::answers::Yes) {
            return {};
        }
    }
    // Only the two saves of the program's own files remember the name: a load's name offered to
    // the next save would have one OK overwrite the file just opened, and a printed page's
    // name is no name for a run or a map.
    if (RemembersName(press.Mode)) {
        memory.LastFileName = fileName;
    }
    return {.Cancel = false,
            .Filepath = path,
            .CsvAllItem = !press.DisplayedItemTicked,
            .CsvRange = press.SelectionRangeTicked};
}

} // namespace torvane::output
