#include "vehicle/run_file.h"

#include "logdata/channels.h"
#include "rlg_container.h"
#include "vehicle/generate_run.h"

#include <string>

namespace torvane::sim {

std::vector<std::string> LoggingFileStreams() {
    return {logdata::StreamNames.begin(), logdata::StreamNames.end()};
}

std::vector<std::uint8_t> GenerateRunFile(const logdata::LogHeader& setting, double durationMs,
                                          std::uint64_t seed) {
    rlg::RlgWriter writer(setting.ToBytes(), LoggingFileStreams());
    GenerateRun(setting, durationMs, seed,
                [&writer](int stream, std::span<const std::int16_t> words) {
                    writer.Append(static_cast<std::size_t>(stream), words);
                });
    return writer.Finish();
}

} // namespace torvane::sim
