#pragma once
// Deployment of a logging file into a layer: the driver writes the streams and hands back the
// header; the header is checked, and the slots and the measurement time follow from it.

#include "logdata/layer.h"
#include "shell/message_sink.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>

namespace torvane::logdata {

// The driver's decompressor, so that core does not link the driver library.
class LogFileDecompressor {
public:
    virtual ~LogFileDecompressor() = default;
    // Deploys the file's streams into tempDir under the file number; returns the driver's
    // result: 0 good, -1 not found, -2 no data, -3 a stream not writable, -4 access error.
    virtual int Decompress(const std::filesystem::path& logFile,
                           const std::filesystem::path& tempDir, int fileNumber,
                           LogHeader::Bytes& header, std::int32_t& deployCount) = 0;
};

// The message that tells the operator about a deployment result; empty for 0.
std::string DeployResultMessage(int result, const std::filesystem::path& logFile);

inline constexpr const char* HeaderRefusedMessage = "A file format is not correct.";

// The channels of the twelve slots: 0..6 fixed, 7..10 after SusMode and LafMode, 11 LAP.
std::vector<std::int32_t> SlotChannels(const LogHeader& header);

// Runs the whole deployment of a file into a layer. On false the operator has been told why
// (through the sink) and the layer is not to be used.
bool DeployLoggingFile(LayerSet& layers, int layer, const std::filesystem::path& logFile,
                       LogFileDecompressor& decompressor, shell::MessageSink& sink);

// The measurement length of a layer: the first existing slot decides, by the length of its
// stream and its interval. 0 when no slot exists or its stream is missing.
double FindMeasureTime(const LayerSet& layers, int layer);

} // namespace torvane::logdata
