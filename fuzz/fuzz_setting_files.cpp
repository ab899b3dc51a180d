// libFuzzer target of the setting window's readers: MT.DAT and SETTING.DAT.
//
// Input: one control byte, then the file. The control byte's low bit says which reader gets the
// file; the rest of the input is also read, as the other kind, so that every record meets every
// table. Each record is then shown, checked and built again as the window does it.
//
// Beyond the sanitizers, the harness checks what the window promises of any record: at most one
// tick a row, boxes within their limits, a logging time shown, and a built record whose sampling
// words are periods or 0.

#include "logger/logging_time.h"
#include "logger/setting_file.h"
#include "logger/setting_view.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace torvane;

void Require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "broken promise: %s\n", what);
        std::abort();
    }
}

// A private folder for the run's files, removed when the run ends.
class Workspace {
public:
    Workspace() {
        std::string pattern = (fs::temp_directory_path() / "fuzz-setting-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            std::perror("mkdtemp");
            std::abort();
        }
        root_ = pattern;
    }
    ~Workspace() {
        std::error_code ignored;
        fs::remove_all(root_, ignored);
    }
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    const fs::path& Root() const { return root_; }

private:
    fs::path root_;
};

const fs::path& Folder() {
    static const Workspace workspace;
    return workspace.Root();
}

fs::path Written(const char* name, const std::uint8_t* data, std::size_t size) {
    const fs::path file = Folder() / name;
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    return file;
}

int Number(const std::string& text) {
    return std::stoi(text);
}

void CheckView(const logger::SettingView& view) {
    for (const auto& row : view.Sampling) {
        int ticks = 0;
        for (const bool tick : row) {
            ticks += tick ? 1 : 0;
        }
        Require(ticks <= 1, "one tick a row");
    }
    for (std::size_t item = 0; item < view.On.size(); ++item) {
        Require(view.On[item] != view.Off[item], "ON and OFF are a pair");
    }
    Require(Number(view.CmF) >= logger::CmMin && Number(view.CmF) <= logger::CmMax, "txtCm_F");
    Require(Number(view.CmR) >= logger::CmMin && Number(view.CmR) <= logger::CmMax, "txtCm_R");
    Require(Number(view.StartTh) <= logger::ThMax, "txtTH");
    Require(Number(view.StartNe) <= logger::EngineSpeedMax, "txtNe");
    Require(view.PulseF >= -1 && view.PulseF < logger::PulseCount, "cmbPulse_F");
    Require(!view.TotalTime.empty() && view.TotalTime.back() == 'm', "lblTotalTime");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const bool tableFirst = (data[0] & 1) != 0;
    const fs::path file = Written("FILE.DAT", data + 1, size - 1);

    layout::FileFailure failure;
    logger::MemoryTable table = logger::DefaultMemoryTable();
    const bool tableRead = logger::LoadMemoryTable(file, table, failure);
    const auto setting = logger::LoadSetting(file, failure);
    Require(tableRead && setting.has_value(), "a regular file is always read");
    if (!tableFirst) {
        table = logger::DefaultMemoryTable();
    }

    logger::SettingView view = logger::ClearedSettingView();
    logger::ShowSetting(view, *setting, table);
    CheckView(view);
    if (logger::CheckSetting(view) == logger::SettingFieldError::None) {
        const logdata::LogHeader built = logger::BuildSetting(view, *setting, {2026, 1, 2, 3, 4});
        for (int entry = 0; entry < logdata::SampleTimeCount; ++entry) {
            const int period = built.SampleTime(entry);
            Require(period == 0 || logdata::IsSamplingInterval(period), "periods or 0");
        }
        logger::SettingView again = logger::ClearedSettingView();
        logger::ShowSetting(again, built, table);
        Require(again.Sampling == view.Sampling, "a built record shows as it was built");
    }
    return 0;
}
