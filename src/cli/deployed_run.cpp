#include "cli/deployed_run.h"

#include "binding/tlm_decompressor.h"
#include "logdata/deployment.h"
#include "logdata/laps.h"

#include <random>
#include <system_error>

namespace torvane::cli {
namespace fs = std::filesystem;

DeployedRun::DeployedRun() {
    std::random_device entropy;
    std::error_code error;
    const fs::path base = fs::temp_directory_path(error);
    for (int attempt = 0; attempt < 100; ++attempt) {
        const fs::path candidate =
            base / ("torvane-cli-" + std::to_string(entropy()) + std::to_string(entropy()));
        // create_directory is false when the name exists, so two runs never share a folder.
        if (fs::create_directory(candidate, error)) {
            fs::permissions(candidate, fs::perms::owner_all, fs::perm_options::replace, error);
            layers_.TempDir = candidate;
            break;
        }
    }
}

DeployedRun::~DeployedRun() {
    if (!layers_.TempDir.empty()) {
        std::error_code error;
        fs::remove_all(layers_.TempDir, error);
    }
}

bool DeployedRun::Deploy(const fs::path& logFile, shell::MessageSink& sink) {
    binding::TlmDecompressor decompressor;
    if (!logdata::DeployLoggingFile(layers_, 0, logFile, decompressor, sink)) {
        return false;
    }
    logdata::ReadLapFile(layers_, 0);
    return true;
}

} // namespace torvane::cli
