#include "cli/deployed_run.h"
#include "cli/work_folders.h"

#include "binding/tlm_decompressor.h"
#include "logdata/deployment.h"
#include "logdata/laps.h"

namespace torvane::cli {
namespace fs = std::filesystem;

DeployedRun::DeployedRun() {
    layers_.TempDir = MakeWorkFolder();
}

DeployedRun::~DeployedRun() {
    if (!layers_.TempDir.empty()) {
        RemoveWorkFolder(layers_.TempDir);
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
