#include "logdata/deployment.h"

#include "logdata/values.h"

#include <new>
#include <system_error>

namespace torvane::logdata {
namespace fs = std::filesystem;

std::string DeployResultMessage(int result, const fs::path& logFile) {
    switch (result) {
    case 0:
        return {};
    case -1: {
        // Appended piece by piece: GCC 12 warns falsely (-Wrestrict) on the chained operator+.
        std::string message = "[";
        message.append(logFile.string()).append("]").append("Can not find the specified log file.");
        return message;
    }
    case -2:
        return "There is No data in a file.";
    case -3:
        return "Can not make the file after deployment.";
    case -4:
        return "File access error.";
    default:
        return "Error code = " + std::to_string(result);
    }
}

std::vector<std::int32_t> SlotChannels(const LogHeader& header) {
    std::vector<std::int32_t> channels{Ne, TH, VFW, VRW, DETO1, DETO2, VB};
    const int sus = header.SusMode();
    const int laf = header.LafMode();
    // Values outside 1..3 count as plain spare inputs.
    const bool front = sus == 1 || sus == 3;
    const bool rear = sus == 2 || sus == 3;
    const bool laf1 = laf == 1 || laf == 3;
    const bool laf2 = laf == 2 || laf == 3;
    channels.push_back(front ? FRSUS : VM1);
    channels.push_back(rear ? RRSUS : VM2);
    channels.push_back(laf1 ? LAF1 : VM3);
    channels.push_back(laf2 ? LAF2 : VM4);
    channels.push_back(LAP);
    return channels;
}

double FindMeasureTime(const LayerSet& layers, int layer) {
    const LayerRecord& record = layers.Layer[static_cast<std::size_t>(layer)];
    for (int slot = 0; slot < SlotCount; ++slot) {
        if (!record.ItemExists[static_cast<std::size_t>(slot)]) {
            continue;
        }
        // Only the first existing slot decides, even if its stream is missing.
        const int channel = record.ItemChannel[static_cast<std::size_t>(slot)];
        std::error_code error;
        const auto bytes = fs::file_size(layers.StreamPath(layer, ChannelFile(channel)), error);
        if (error) {
            return 0.0;
        }
        return static_cast<double>(ChannelSampleTime(record.Header, channel)) *
               static_cast<double>(bytes / 2);
    }
    return 0.0;
}

bool DeployLoggingFile(LayerSet& layers, int layer, const fs::path& logFile,
                       LogFileDecompressor& decompressor, shell::MessageSink& sink) {
    try {
        LogHeader::Bytes headerBytes{};
        std::int32_t deployCount = 0;
        const int result = decompressor.Decompress(
            logFile, layers.TempDir, layers.FileNumber(layer), headerBytes, deployCount);
        if (result != 0) {
            shell::ShowMessage(sink, DeployResultMessage(result, logFile), shell::buttons::Ok,
                               shell::icons::Stop);
            return false;
        }
        const LogHeader header = LogHeader::FromBytes(headerBytes);
        if (!CheckHeader(header, layers.MinSampleTime)) {
            shell::ShowMessage(sink, HeaderRefusedMessage, shell::buttons::Ok,
                               shell::icons::Warning);
            return false;
        }

        LayerRecord& record = layers.Layer.at(static_cast<std::size_t>(layer));
        record.Header = header;
        record.ItemChannel = SlotChannels(header);
        record.FormulaItems.clear();
        for (int slot = 0; slot < SampleTimeCount; ++slot) {
            record.ItemExists[static_cast<std::size_t>(slot)] = header.SampleTime(slot) != 0;
        }
        record.ItemExists[LapSlot] = header.LapWord() != 0;
        if (header.ThOpen() - header.ThClose() <= 0) {
            // A throttle without a calibrated span is no item, even when its stream is there.
            record.ItemExists[TH] = false;
        }
        record.DeployCount = deployCount;
        record.MeasureTime = FindMeasureTime(layers, layer);
        return true;
    } catch (const std::bad_alloc&) {
        shell::ShowRunTimeError(sink, {7, "Out of memory"});
    } catch (const std::exception& error) {
        shell::ShowRunTimeError(sink, {5, error.what()});
    }
    return false;
}

} // namespace torvane::logdata
