#include "load/comment_file.h"

#include "graph/comment_tool.h"
#include "layout/file_image.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <limits>

namespace torvane::load {
namespace fs = std::filesystem;
namespace {

constexpr std::string_view Hex = "0123456789ABCDEF";
constexpr std::int64_t MaxCommentCount = std::numeric_limits<std::int16_t>::max();
// Well above the longest file of MaxCommentCount comments, so a stray large file is not read in.
constexpr std::uintmax_t MaxCommentFileSize = 8 << 20;
// Damaged copies kept beside one logging file before a further one is left where it is.
constexpr int MaxDamagedCopies = 99;

// Control bytes and the backslash are written as \xHH, so a record stays on its line whatever
// the text holds.
bool NeedsEscape(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F || c == '\\';
}

void AppendEscaped(std::string& out, std::string_view text) {
    for (const char c : text) {
        if (!NeedsEscape(c)) {
            out += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        out += "\\x";
        out += Hex[byte >> 4];
        out += Hex[byte & 0x0F];
    }
}

bool Unescape(std::string_view text, std::string& out) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            if (NeedsEscape(text[i])) {
                return false;
            }
            out += text[i];
            continue;
        }
        unsigned value = 0;
        if (text.substr(i + 1, 1) != "x" || i + 4 > text.size() ||
            std::from_chars(text.data() + i + 2, text.data() + i + 4, value, 16).ptr !=
                text.data() + i + 4) {
            return false;
        }
        out += static_cast<char>(value);
        i += 3;
    }
    return true;
}

// A whole number from low to high at the start of text: where it ends, or null.
const char* ParseNumber(std::string_view text, std::int64_t low, std::int64_t high,
                        std::int64_t& value) {
    const auto [next, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || value < low || value > high) {
        return nullptr;
    }
    return next;
}

// The next number of a record and the blank after it.
bool TakeNumber(std::string_view& line, std::int64_t low, std::int64_t high, std::int64_t& value) {
    const char* next = ParseNumber(line, low, high, value);
    if (next == nullptr || next == line.data() + line.size() || *next != ' ') {
        return false;
    }
    line.remove_prefix(static_cast<std::size_t>(next - line.data()) + 1);
    return true;
}

template <typename Field> bool TakeField(std::string_view& line, Field& field) {
    std::int64_t value = 0;
    if (!TakeNumber(line, std::numeric_limits<Field>::min(), std::numeric_limits<Field>::max(),
                    value)) {
        return false;
    }
    field = static_cast<Field>(value);
    return true;
}

bool IsCommentChannel(int channel) {
    return (channel >= 0 && channel < logdata::ChannelCount) || channel == logdata::ComputedChannel;
}

bool ParseRecord(std::string_view line, graph::CommentRecord& record, std::string& reason) {
    if (!TakeField(line, record.OffsetX) || !TakeField(line, record.OffsetY) ||
        !TakeField(line, record.Channel) || !TakeField(line, record.Slot) ||
        !TakeField(line, record.Time) || !TakeField(line, record.Value)) {
        reason = "the numbers of the comment are not as written";
        return false;
    }
    if (!IsCommentChannel(record.Channel) || record.Slot < 0) {
        reason = "the comment names no item";
        return false;
    }
    if (!Unescape(line, record.Text) || record.Text.empty() ||
        graph::CommentText(record.Text) != record.Text) {
        reason = "the text is not a comment of 1 to 40 characters";
        return false;
    }
    record.Free = 0;
    return true;
}

bool Damaged(CommentFileDamage& damage, std::size_t line, std::string reason) {
    damage = {static_cast<int>(line), std::move(reason)};
    return false;
}

std::vector<std::string_view> SplitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            break;
        }
        text.remove_prefix(end + 1);
    }
    return lines;
}

std::string FileNameOf(const fs::path& path) {
    return path.filename().string();
}

void ReportUnread(shell::MessageSink& sink, const fs::path& logFile, const std::string& why) {
    shell::ShowMessage(sink,
                       "The comments of " + FileNameOf(logFile) + " were left out: " + why + ".",
                       shell::buttons::Ok, shell::icons::Warning);
}

void ReportUnsaved(shell::MessageSink& sink, const fs::path& logFile,
                   const layout::FileFailure& failure) {
    shell::ShowMessage(sink,
                       "The comments of " + FileNameOf(logFile) + " could not be saved (" +
                           layout::DescribeFailure(failure).Description +
                           "). They stay in this window while it is open.",
                       shell::buttons::Ok, shell::icons::Warning);
}

// The first of RUN.rlg.comments.damaged, .damaged.2, .damaged.3 ... that names nothing, so an
// earlier damaged copy, perhaps half mended by hand, is never renamed over; empty when all are
// taken.
fs::path FreeDamagedName(const fs::path& sideFile) {
    for (int copy = 1; copy <= MaxDamagedCopies; ++copy) {
        fs::path kept = sideFile;
        kept += DamagedCommentFileSuffix;
        if (copy > 1) {
            std::string number = std::to_string(copy); // "." + to_string trips a false -Wrestrict
            number.insert(0, 1, '.');
            kept += number;
        }
        std::error_code error;
        if (!fs::exists(fs::symlink_status(kept, error))) {
            return kept;
        }
    }
    return {};
}

// Keeps a damaged side file under another name and says so. False when it had to stay where it
// is, so that no save may write over it.
bool SetAside(const fs::path& logFile, const fs::path& sideFile, const CommentFileDamage& damage,
              shell::MessageSink& sink) {
    const fs::path kept = FreeDamagedName(sideFile);
    std::error_code error = std::make_error_code(std::errc::file_exists);
    if (!kept.empty()) {
        error.clear();
        fs::rename(sideFile, kept, error);
    }
    std::string why = sideFile.string() + " is damaged (line " + std::to_string(damage.Line) +
                      ": " + damage.Reason + ")";
    why += error ? ", and it was left as it is" : "; it is kept as " + FileNameOf(kept);
    ReportUnread(sink, logFile, why);
    return !error;
}

// The comments of a logging file's side file: none when there is none, and none when it is
// damaged (it is set aside and reported; leftDamaged when it could not be moved); nullopt, with
// the failure, when it cannot be read.
std::optional<std::vector<graph::CommentRecord>> ReadSideFile(const fs::path& logFile,
                                                              layout::FileFailure& failure,
                                                              shell::MessageSink& sink,
                                                              bool& leftDamaged) {
    leftDamaged = false;
    const fs::path sideFile = CommentFilePath(logFile);
    std::error_code error;
    if (!fs::exists(sideFile, error)) {
        return std::vector<graph::CommentRecord>{};
    }
    if (fs::file_size(sideFile, error) > MaxCommentFileSize && !error) {
        leftDamaged =
            !SetAside(logFile, sideFile, {1, "it is far longer than any comment file"}, sink);
        return std::vector<graph::CommentRecord>{};
    }
    const std::optional<std::vector<std::uint8_t>> bytes =
        layout::ReadFileImage(sideFile, MaxCommentFileSize, failure);
    if (!bytes) {
        return std::nullopt;
    }
    std::vector<graph::CommentRecord> comments;
    CommentFileDamage damage;
    if (!DecodeCommentFile({reinterpret_cast<const char*>(bytes->data()), bytes->size()}, comments,
                           damage)) {
        leftDamaged = !SetAside(logFile, sideFile, damage, sink);
    }
    return comments;
}

bool Contains(std::span<const graph::CommentRecord> comments, const graph::CommentRecord& comment) {
    return std::any_of(comments.begin(), comments.end(), [&](const graph::CommentRecord& other) {
        return graph::SameComment(other, comment);
    });
}

} // namespace

fs::path CommentFilePath(const fs::path& logFile) {
    fs::path side = logFile;
    side += CommentFileSuffix;
    return side;
}

std::string EncodeCommentFile(std::span<const graph::CommentRecord> comments) {
    std::string text(CommentFileMagic);
    text += '\n';
    text += std::to_string(comments.size());
    text += '\n';
    for (const graph::CommentRecord& comment : comments) {
        for (const std::int32_t number :
             {std::int32_t{comment.OffsetX}, std::int32_t{comment.OffsetY},
              std::int32_t{comment.Channel}, std::int32_t{comment.Slot}, comment.Time,
              comment.Value}) {
            text += std::to_string(number);
            text += ' ';
        }
        AppendEscaped(text, comment.Text);
        text += '\n';
    }
    return text;
}

bool DecodeCommentFile(std::string_view text, std::vector<graph::CommentRecord>& comments,
                       CommentFileDamage& damage) {
    comments.clear();
    const std::vector<std::string_view> lines = SplitLines(text);
    if (lines.empty()) {
        return Damaged(damage, 1, "the file is empty");
    }
    if (text.back() != '\n') {
        return Damaged(damage, lines.size(), "the file ends inside a line");
    }
    if (lines[0] != CommentFileMagic) {
        return Damaged(damage, 1, "it does not begin with " + std::string(CommentFileMagic));
    }
    std::int64_t count = 0;
    const std::string_view countLine = lines.size() > 1 ? lines[1] : std::string_view();
    if (ParseNumber(countLine, 0, MaxCommentCount, count) != countLine.data() + countLine.size() ||
        countLine.empty()) {
        return Damaged(damage, 2, "the number of comments is missing");
    }
    const std::size_t records = lines.size() - 2;
    const auto expected = static_cast<std::size_t>(count);
    if (records < expected) {
        return Damaged(damage, lines.size() + 1,
                       "the file ends after " + std::to_string(records) + " of " +
                           std::to_string(expected) + " comments");
    }
    if (records > expected) {
        return Damaged(damage, expected + 3, "there is more after the last comment");
    }
    std::vector<graph::CommentRecord> read(expected);
    for (std::size_t i = 0; i < expected; ++i) {
        std::string reason;
        if (!ParseRecord(lines[i + 2], read[i], reason)) {
            return Damaged(damage, i + 3, reason);
        }
    }
    comments = std::move(read);
    return true;
}

void ReadLayerComments(graph::GraphWindowState& state, int layer, shell::MessageSink& sink) {
    graph::FreeLayerComments(state.Comments, layer);
    const fs::path& logFile = state.Layers.Layer.at(static_cast<std::size_t>(layer)).FilePath;
    if (logFile.empty()) {
        return;
    }
    layout::FileFailure failure;
    bool leftDamaged = false;
    std::optional<std::vector<graph::CommentRecord>> comments =
        ReadSideFile(logFile, failure, sink, leftDamaged);
    if (!comments) {
        ReportUnread(sink, logFile,
                     "they could not be read (" + layout::DescribeFailure(failure).Description +
                         ")");
        return;
    }
    for (graph::CommentRecord& comment : *comments) {
        comment.Layer = static_cast<std::int16_t>(layer);
        comment.FileName = logFile;
        graph::AddComment(state.Comments, std::move(comment));
    }
}

std::vector<graph::CommentRecord> WindowFileComments(const graph::GraphWindowState& state,
                                                     const fs::path& logFile) {
    std::vector<graph::CommentRecord> found;
    for (const graph::CommentRecord& comment : state.Comments) {
        if (comment.InUse() && comment.Layer <= state.LastLayer &&
            state.Layers.Layer.at(static_cast<std::size_t>(comment.Layer)).FilePath == logFile &&
            !Contains(found, comment)) {
            found.push_back(comment);
        }
    }
    return found;
}

bool WriteCommentFile(std::span<const graph::CommentRecord> comments, const fs::path& logFile,
                      shell::MessageSink& sink) {
    if (logFile.empty()) {
        return true;
    }
    const fs::path sideFile = CommentFilePath(logFile);
    layout::FileFailure failure;
    if (comments.empty()) {
        std::error_code error;
        fs::remove(sideFile, error);
        if (error) {
            ReportUnsaved(sink, logFile, {error, sideFile});
            return false;
        }
        return true;
    }
    const std::string text = EncodeCommentFile(comments);
    fs::path temporary = sideFile;
    temporary += ".new";
    if (!layout::ReplaceFileImage(sideFile, temporary,
                                  {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()},
                                  failure)) {
        ReportUnsaved(sink, logFile, failure);
        return false;
    }
    return true;
}

bool RemoveCommentFile(const fs::path& logFile, shell::MessageSink& sink) {
    const fs::path sideFile = CommentFilePath(logFile);
    std::error_code error;
    fs::remove(sideFile, error);
    if (error) {
        shell::ShowRunTimeError(sink, layout::DescribeFailure({error, sideFile}));
        return false;
    }
    return true;
}

bool SaveLayerComments(const graph::GraphWindowState& state, int layer, shell::MessageSink& sink) {
    const fs::path& logFile = state.Layers.Layer.at(static_cast<std::size_t>(layer)).FilePath;
    if (logFile.empty()) {
        return true;
    }
    layout::FileFailure failure;
    bool leftDamaged = false;
    std::optional<std::vector<graph::CommentRecord>> saved =
        ReadSideFile(logFile, failure, sink, leftDamaged);
    if (leftDamaged) {
        // A damaged side file that could not be set aside may still be mended by hand.
        failure = {std::make_error_code(std::errc::file_exists), CommentFilePath(logFile)};
    }
    if (!saved || leftDamaged) {
        ReportUnsaved(sink, logFile, failure);
        return false;
    }
    std::vector<graph::CommentRecord> kept = WindowFileComments(state, logFile);
    std::vector<graph::CommentRecord> replaced;
    std::copy_if(state.ReplacedComments.begin(), state.ReplacedComments.end(),
                 std::back_inserter(replaced),
                 [&](const graph::CommentRecord& comment) { return comment.FileName == logFile; });
    for (graph::CommentRecord& comment : *saved) {
        if (!Contains(kept, comment) && !Contains(replaced, comment)) {
            kept.push_back(std::move(comment));
        }
    }
    return WriteCommentFile(kept, logFile, sink);
}

} // namespace torvane::load
