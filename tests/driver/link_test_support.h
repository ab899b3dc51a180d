#pragma once
// A scripted logger served by the real link::Server on a thread, for tests that call the real
// libtlm entry points against it.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "link/device_calls.h"
#include "link/server.h"
#include "support/temp_folder.h"
#include "tlm.h"

namespace torvane::link::test {

// A record with every byte set from seed, so that each field holds an odd value of its own and
// a field that arrives in the wrong place or not at all shows.
template <typename Record> Record OddRecord(unsigned seed) {
    Record record;
    auto* bytes = reinterpret_cast<std::uint8_t*>(&record);
    for (std::size_t i = 0; i < sizeof(Record); ++i) {
        bytes[i] = static_cast<std::uint8_t>(seed * 53u + i * 37u + 0x81u);
    }
    return record;
}

template <typename Record> bool SameBytes(const Record& a, const Record& b) {
    return std::memcmp(&a, &b, sizeof(Record)) == 0;
}

// The logger's status bytes (all but bytDriver) of two records agree.
bool SameLoggerStatus(const TlmStatus& a, const TlmStatus& b);

// Answers every call from its script and writes down what it was given. The script is set
// before a call and read after it, never during, so the test thread and the server's thread
// take turns through the link itself.
class ScriptedDevice : public DeviceCalls {
public:
    // Given by every call: result (FileCount gives fileCount) and the logger's status bytes.
    std::int32_t result = TLM_OK;
    TlmStatus status = OddRecord<TlmStatus>(1);
    std::int32_t fileCount = 0;
    std::vector<TlmDownloadEntry> entries;
    TlmTransferBlock startBlock = OddRecord<TlmTransferBlock>(2);
    std::vector<std::vector<std::uint8_t>> blocks; // the transfer, block by block
    std::int32_t endResult = TLM_OK;
    TlmDetonationMap map = OddRecord<TlmDetonationMap>(3);
    TlmInitData initData = OddRecord<TlmInitData>(4);
    TlmSettingData setting = OddRecord<TlmSettingData>(5);
    TlmSignalCondition signal = OddRecord<TlmSignalCondition>(6);
    TlmSpecialData special = OddRecord<TlmSpecialData>(7);
    std::vector<std::uint8_t> errorInfo;

    // Faults: the next call sleeps this long; DropLinkNow() turns true after this many
    // TransferRead calls (negative: never).
    std::atomic<int> stallNextCallMs{0};
    std::atomic<int> dropAfterReads{-1};

    // What the device was given.
    std::atomic<int> opens{0};
    std::atomic<int> closes{0};
    std::vector<std::string> calls;
    std::int16_t countAsked = 0;
    TlmDownloadEntry entryAsked{};
    TlmTransferBlock blockAsked{};
    std::int16_t kindAsked = 0;
    std::int32_t indexAsked = 0;
    TlmSettingData settingSent{};
    std::int32_t loggingValue = 0;
    std::int16_t serviceCode = 0;

    std::int32_t Open(TlmStatus& s) override {
        ++opens;
        nextBlock_ = 0;
        reads_ = 0;
        return Answer("Open", s);
    }
    void Closed() override { ++closes; }
    std::int32_t Reset(TlmStatus& s) override { return Answer("Reset", s); }
    std::int32_t GetStatus(TlmStatus& s) override { return Answer("GetStatus", s); }
    std::int32_t FileCount(TlmStatus& s) override {
        Answer("FileCount", s);
        return fileCount;
    }
    std::int32_t DownloadList(TlmStatus& s, std::span<TlmDownloadEntry> list) override {
        countAsked = static_cast<std::int16_t>(list.size());
        std::copy_n(entries.begin(), std::min(entries.size(), list.size()), list.begin());
        return Answer("DownloadList", s);
    }
    std::int32_t TransferStart(TlmStatus& s, const TlmDownloadEntry& entry,
                               TlmTransferBlock& block) override {
        entryAsked = entry;
        block = startBlock;
        nextBlock_ = 0;
        return Answer("TransferStart", s);
    }
    std::int32_t TransferRead(TlmStatus& s, TlmTransferBlock& block,
                              std::vector<std::uint8_t>& bytes) override;
    std::int32_t TransferEnd(TlmStatus& s, const TlmTransferBlock& asked,
                             TlmTransferBlock& block) override {
        blockAsked = asked;
        block = asked;
        Answer("TransferEnd", s);
        return endResult;
    }
    std::int32_t ClearFiles(TlmStatus& s) override { return Answer("ClearFiles", s); }
    std::int32_t DetonationMap(TlmStatus& s, TlmDetonationMap& out) override {
        out = map;
        return Answer("DetonationMap", s);
    }
    std::int32_t InitializeSensor(TlmStatus& s, std::int16_t kind) override {
        kindAsked = kind;
        return Answer("InitializeSensor", s);
    }
    std::int32_t InitData(TlmStatus& s, std::int32_t index, TlmInitData& out) override {
        indexAsked = index;
        out = initData;
        return Answer("InitData", s);
    }
    std::int32_t SendSetting(TlmStatus& s, const TlmSettingData& in) override {
        settingSent = in;
        return Answer("SendSetting", s);
    }
    std::int32_t ReadSetting(TlmStatus& s, TlmSettingData& out) override {
        out = setting;
        return Answer("ReadSetting", s);
    }
    std::int32_t SignalCondition(TlmStatus& s, TlmSignalCondition& out) override {
        out = signal;
        return Answer("SignalCondition", s);
    }
    std::int32_t SpecialData(TlmStatus& s, TlmSpecialData& out) override {
        out = special;
        return Answer("SpecialData", s);
    }
    std::int32_t ErrorInfo(TlmStatus& s, std::span<std::uint8_t> buffer) override {
        std::copy_n(errorInfo.begin(), std::min(errorInfo.size(), buffer.size()), buffer.begin());
        return Answer("ErrorInfo", s);
    }
    std::int32_t LoggingControl(TlmStatus& s, std::int32_t value) override {
        loggingValue = value;
        return Answer("LoggingControl", s);
    }
    std::int32_t ServiceMode(TlmStatus& s, std::int16_t code) override {
        serviceCode = code;
        return Answer("ServiceMode", s);
    }
    bool DropLinkNow() override {
        return dropAfterReads.load() >= 0 && reads_ >= dropAfterReads.load();
    }

private:
    std::int32_t Answer(const char* call, TlmStatus& s);

    std::size_t nextBlock_ = 0;
    int reads_ = 0;
};

// Sets an environment variable for the life of the object.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const std::string& value);
    ~ScopedEnvironment();
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    std::string name_;
    std::string saved_;
    bool hadValue_ = false;
};

// The server on its own thread, serving a ScriptedDevice on a private unix socket (or on tcp),
// with TORVANE_LOGGER pointing libtlm at it and a short time-out on both ends.
class ServedLogger {
public:
    static constexpr std::chrono::milliseconds Timeout{300};

    enum class Transport { Unix, Tcp };
    explicit ServedLogger(Transport transport = Transport::Unix);
    ~ServedLogger();
    ServedLogger(const ServedLogger&) = delete;
    ServedLogger& operator=(const ServedLogger&) = delete;

    ScriptedDevice device;
    // Stops the server and waits for its thread; the destructor does it too.
    void Stop();
    const torvane::testing::TempFolder& Folder() const { return folder_; }
    const Endpoint& BoundEndpoint() const { return server_.BoundEndpoint(); }

private:
    torvane::testing::TempFolder folder_;
    Server server_;
    std::thread thread_;
    std::optional<ScopedEnvironment> endpointVariable_;
    ScopedEnvironment timeoutVariable_;
};

// Polls condition until it holds or two seconds pass.
bool Eventually(const std::function<bool()>& condition);

} // namespace torvane::link::test
