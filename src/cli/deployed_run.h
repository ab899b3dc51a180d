#pragma once
// A logging file deployed into a private temporary folder, as a graph window's first layer
// would hold it; the folder goes when the object does.

#include "logdata/layer.h"
#include "shell/message_sink.h"

#include <filesystem>

namespace torvane::cli {

class DeployedRun {
public:
    DeployedRun();
    ~DeployedRun();
    DeployedRun(const DeployedRun&) = delete;
    DeployedRun& operator=(const DeployedRun&) = delete;

    // Deploys the file as layer 0 and reads its lap marks. On false the sink has been told why.
    bool Deploy(const std::filesystem::path& logFile, shell::MessageSink& sink);

    const logdata::LayerSet& Layers() const { return layers_; }
    const logdata::LayerRecord& Layer() const { return layers_.Layer[0]; }
    const logdata::LapInfo& Lap() const { return layers_.Lap[0]; }

private:
    logdata::LayerSet layers_;
};

} // namespace torvane::cli
