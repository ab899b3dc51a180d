// Writes the seed corpus of fuzz_link_server: request sequences as libtlm sends them, one frame
// after another: status, file list, a whole transfer, settings, service calls.

#include "link/messages.h"
#include "link/wire.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace torvane::link;

class Requests {
public:
    template <typename... Values> Requests& Add(MessageKind kind, const Values&... values) {
        PayloadWriter payload;
        PutAll(payload, values...);
        AppendFrame(Frame{kind, false, ++id_, std::move(payload.Bytes())}, bytes_);
        return *this;
    }
    const std::vector<std::uint8_t>& Bytes() const { return bytes_; }

private:
    std::uint32_t id_ = 1;
    std::vector<std::uint8_t> bytes_;
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s SEED_FOLDER\n", argv[0]);
        return 2;
    }
    TlmDownloadEntry entry{1, 0, 60, 4096};
    TlmTransferBlock block{};
    TlmSettingData setting{};
    std::vector<Requests> seeds(4);
    seeds[0]
        .Add(MessageKind::GetStatus)
        .Add(MessageKind::FileCount)
        .Add(MessageKind::DownloadList, std::int16_t{16})
        .Add(MessageKind::ErrorInfo);
    seeds[1]
        .Add(MessageKind::LoggingControl, std::int32_t{1})
        .Add(MessageKind::TransferStart, entry)
        .Add(MessageKind::TransferRead, block)
        .Add(MessageKind::TransferRead, block)
        .Add(MessageKind::TransferEnd, block);
    seeds[2]
        .Add(MessageKind::ReadSetting)
        .Add(MessageKind::SendSetting, setting)
        .Add(MessageKind::SignalCondition)
        .Add(MessageKind::SpecialData);
    seeds[3]
        .Add(MessageKind::ServiceMode, std::int16_t{1})
        .Add(MessageKind::InitializeSensor, std::int16_t{2})
        .Add(MessageKind::InitData, std::int32_t{0})
        .Add(MessageKind::DetonationMap)
        .Add(MessageKind::ClearFiles)
        .Add(MessageKind::Reset);
    for (std::size_t i = 0; i < seeds.size(); ++i) {
        std::ofstream out(std::filesystem::path(argv[1]) / ("seed-" + std::to_string(i)),
                          std::ios::binary);
        out.write(reinterpret_cast<const char*>(seeds[i].Bytes().data()),
                  static_cast<std::streamsize>(seeds[i].Bytes().size()));
    }
    return 0;
}
