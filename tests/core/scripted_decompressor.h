#pragma once
// Stands in for the driver's deployment: writes the streams scripted for a path under the file
// number it is given, or fails with a code, or throws.

#include "logdata/deployment.h"
#include "shell/temp_files.h"
#include "support/temp_folder.h"

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace torvane::logdata::testing {

struct ScriptedRun {
    LogHeader Header;
    std::map<std::string, std::vector<std::int16_t>> Streams;
};

class ScriptedDecompressor : public LogFileDecompressor {
public:
    int Decompress(const std::filesystem::path& logFile, const std::filesystem::path& tempDir,
                   int fileNumber, LogHeader::Bytes& header, std::int32_t& deployCount) override {
        fileNumbers.push_back(fileNumber);
        if (throws) {
            throw std::runtime_error("stream vanished");
        }
        const auto run = runs.find(logFile.string());
        if (result != 0 || run == runs.end()) {
            return result != 0 ? result : -1;
        }
        for (const auto& [name, words] : run->second.Streams) {
            torvane::testing::WriteWords16(tempDir / shell::StreamFileName(name, fileNumber),
                                           words);
        }
        header = run->second.Header.ToBytes();
        deployCount = static_cast<std::int32_t>(run->second.Streams.size());
        return 0;
    }

    int result = 0;
    bool throws = false;
    std::map<std::string, ScriptedRun> runs;
    std::vector<int> fileNumbers;
};

} // namespace torvane::logdata::testing
