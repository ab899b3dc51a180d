#pragma once
// The comments of a logging file live beside it in a small text file, RUN.rlg.comments for
// RUN.rlg (docs/comment-file-format.md). It is read when the file is opened in a window, as the
// main file or as a further layer, and written whenever the window's comments of that file
// change and when the file is saved under a new name. A damaged side file is set aside and
// reported; the run opens without its comments.

#include "graph/comment_list.h"
#include "graph/window_state.h"
#include "shell/message_sink.h"

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::load {

inline constexpr std::string_view CommentFileSuffix = ".comments";
// A side file that could not be read is renamed to this (after CommentFileSuffix), so that a
// later save does not write over what may still be saved by hand.
inline constexpr std::string_view DamagedCommentFileSuffix = ".damaged";
inline constexpr std::string_view CommentFileMagic = "TORVANE-COMMENTS 1";

std::filesystem::path CommentFilePath(const std::filesystem::path& logFile);

// The side file's text for the comments given (Free, Layer and FileName are not stored: the
// file belongs to one logging file).
std::string EncodeCommentFile(std::span<const graph::CommentRecord> comments);

// Where a side file stops making sense: its line (from 1) and what is wrong there.
struct CommentFileDamage {
    int Line = 0;
    std::string Reason;
};
// All of the file or nothing: false, with the damage, for any line that is not as written.
bool DecodeCommentFile(std::string_view text, std::vector<graph::CommentRecord>& comments,
                       CommentFileDamage& damage);

// Replaces the comments of a layer with those of its file's side file, pinned to that layer.
// No side file means no comments; a damaged or unreadable one is reported and gives none.
void ReadLayerComments(graph::GraphWindowState& state, int layer, shell::MessageSink& sink);

// The window's comments of a logging file: those in use of every layer that shows it, each once.
std::vector<graph::CommentRecord> WindowFileComments(const graph::GraphWindowState& state,
                                                     const std::filesystem::path& logFile);

// Writes the comments given beside logFile; with none, the side file is removed. A failure is
// reported; the file that was there stays as it was. True on success.
bool WriteCommentFile(std::span<const graph::CommentRecord> comments,
                      const std::filesystem::path& logFile, shell::MessageSink& sink);

// Removes the side file of a logging file that is deleted (a downloaded file saved elsewhere or
// thrown away), so that no later file of the same name inherits its comments. Only a failure
// other than a missing file is reported.
bool RemoveCommentFile(const std::filesystem::path& logFile, shell::MessageSink& sink);

// After the comments of a layer changed: writes the window's comments of the layer's file beside
// it, together with those of its side file that the window neither holds nor replaced, so that
// what another window showing the same file saved there stays.
bool SaveLayerComments(const graph::GraphWindowState& state, int layer, shell::MessageSink& sink);

} // namespace torvane::load
