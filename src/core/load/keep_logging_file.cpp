#include "load/keep_logging_file.h"

#include "layout/file_image.h"
#include "load/comment_file.h"

#include <system_error>

namespace torvane::load {
namespace fs = std::filesystem;

namespace {

// The run-time error number of a file that is not there.
constexpr int FileNotFound = 53;

} // namespace

bool CopyLoggingFile(const fs::path& file, const fs::path& target, shell::MessageSink& sink) {
    std::error_code error;
    fs::copy_file(file, target, fs::copy_options::overwrite_existing, error);
    if (error) {
        shell::ShowRunTimeError(sink, layout::DescribeFailure({error, target}));
        return false;
    }
    return true;
}

bool DeleteLoggingFile(const fs::path& file, shell::MessageSink& sink) {
    std::error_code error;
    fs::remove(file, error);
    if (!error) {
        // A later download may take the same working name: its comments must not be these.
        RemoveCommentFile(file, sink);
        return true;
    }
    const shell::RunTimeError failure = layout::DescribeFailure({error, file});
    if (failure.Number == FileNotFound) {
        return true;
    }
    shell::ShowRunTimeError(sink, failure);
    return false;
}

} // namespace torvane::load
