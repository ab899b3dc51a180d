// Writes the seed corpus of fuzz_link_client: what a logger answers to the calls the target
// makes, in order (the hello, status, file count, file list, setting, error log), whole and
// stopped at each answer.

#include "link/messages.h"
#include "link/wire.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace torvane::link;

class Answers {
public:
    template <typename... Values> void Add(MessageKind kind, const Values&... values) {
        PayloadWriter payload;
        PutAll(payload, values...);
        AppendFrame(Frame{kind, true, ++id_, std::move(payload.Bytes())}, bytes_);
        ends_.push_back(bytes_.size());
    }
    void AddBytes(MessageKind kind, std::int32_t result, std::span<const std::uint8_t> bytes) {
        PayloadWriter payload;
        PutAll(payload, result, TlmStatus{});
        payload.PutBytes(bytes);
        AppendFrame(Frame{kind, true, ++id_, std::move(payload.Bytes())}, bytes_);
        ends_.push_back(bytes_.size());
    }
    const std::vector<std::uint8_t>& Bytes() const { return bytes_; }
    const std::vector<std::size_t>& Ends() const { return ends_; }

private:
    std::uint32_t id_ = 0;
    std::vector<std::uint8_t> bytes_;
    std::vector<std::size_t> ends_;
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s SEED_FOLDER\n", argv[0]);
        return 2;
    }
    TlmStatus status{};
    status.bytState = TLM_STATE_IDLE;
    Answers answers;
    answers.Add(MessageKind::Hello, std::uint8_t{0}, ProtocolVersion, std::int32_t{TLM_OK}, status);
    answers.Add(MessageKind::GetStatus, std::int32_t{TLM_OK}, status);
    answers.Add(MessageKind::FileCount, std::int32_t{2}, status);
    answers.Add(MessageKind::DownloadList, std::int32_t{TLM_OK}, status, std::uint16_t{2},
                TlmDownloadEntry{1, 0, 60, 4096}, TlmDownloadEntry{2, 0, 300, 81920});
    answers.Add(MessageKind::ReadSetting, std::int32_t{TLM_OK}, status, TlmSettingData{});
    const std::vector<std::uint8_t> errorLog(TLM_ERROR_INFO_SIZE, 0x5a);
    answers.AddBytes(MessageKind::ErrorInfo, TLM_OK, errorLog);
    for (std::size_t i = 0; i < answers.Ends().size(); ++i) {
        std::ofstream out(std::filesystem::path(argv[1]) / ("seed-" + std::to_string(i)),
                          std::ios::binary);
        out.write(reinterpret_cast<const char*>(answers.Bytes().data()),
                  static_cast<std::streamsize>(answers.Ends()[i]));
    }
    return 0;
}
