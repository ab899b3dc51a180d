// setting show and setting make, and the logger's setting read and sent: the setting window's
// work from the command line.

#include "cli/cli_support.h"
#include "cli/commands.h"
#include "cli/setting_output.h"
#include "logger/driver_calls.h"
#include "logger/logger_action.h"
#include "logger/setting_file.h"
#include "logger/setting_send.h"
#include "logger/setting_view.h"

#include <array>
#include <charconv>
#include <iostream>

namespace torvane::cli {
namespace {

using logger::SampleRow;
using nlohmann::json;

constexpr std::array<std::pair<std::string_view, SampleRow>, logger::SampleRowCount> RowNames{{
    {"Ne", SampleRow::Ne},
    {"TH", SampleRow::TH},
    {"VFW", SampleRow::VFW},
    {"VRW", SampleRow::VRW},
    {"VB", SampleRow::VB},
    {"VM1", SampleRow::VM1},
    {"VM2", SampleRow::VM2},
    {"VM3", SampleRow::VM3},
    {"VM4", SampleRow::VM4},
}};
constexpr std::array<std::string_view, 3> EngineCaptions{"1P/rev", "2P/rev", "0.5P/rev"};

std::string RowLabel(const logger::SettingView& view, SampleRow row) {
    const int vm = static_cast<int>(row) - static_cast<int>(SampleRow::VM1);
    if (vm >= 0) {
        return view.VmLabels[static_cast<std::size_t>(vm)];
    }
    for (const auto& [name, each] : RowNames) {
        if (each == row) {
            return std::string(name);
        }
    }
    return {};
}

std::string Padded(std::string text, std::size_t width) {
    text.resize(std::max(text.size(), width), ' ');
    return text;
}

void PrintView(const logger::SettingView& view) {
    const logger::SamplingChoice choice = logger::ChoiceOf(view);
    for (const auto& [name, row] : RowNames) {
        const int column = choice.Column[static_cast<std::size_t>(row)];
        std::cout << Padded(RowLabel(view, row), 8)
                  << (column < 0 ? std::string("off")
                                 : std::to_string(
                                       logger::SamplingPeriods[static_cast<std::size_t>(column)]) +
                                       " ms")
                  << '\n';
    }
    constexpr std::array<std::string_view, 3> switches{"DETO1", "DETO2", "LAP"};
    for (std::size_t i = 0; i < switches.size(); ++i) {
        std::cout << Padded(std::string(switches[i]), 8) << (view.On[i] ? "ON" : "OFF") << '\n';
    }
    const auto pulse = [](int index) {
        return index < 0 ? std::string("-") : std::to_string(index + 1);
    };
    std::cout << "Pulses        front " << pulse(view.PulseF) << ", rear " << pulse(view.PulseR)
              << '\n'
              << "Tyre [cm]     front " << view.CmF << ", rear " << view.CmR << '\n'
              << "Start         TH " << view.StartTh << " %, Ne " << view.StartNe << " r/min\n"
              << "Shift         " << view.Shift << " r/min\n"
              << "Engine        " << EngineCaptions[static_cast<std::size_t>(view.Engine)] << '\n'
              << "Set           " << (view.SetTime.empty() ? "-" : view.SetTime) << '\n'
              << "Logging time  " << view.TotalTime << " (" << view.TotalBytes
              << " bytes per 300 ms)\n";
}

json FieldsJson(const logdata::LogHeader& setting) {
    json fields = json::object();
    for (const auto& field : logger::SettingFields()) {
        if (field.Words == 1) {
            fields[std::string(field.Name)] = setting.Word(field.FirstWord);
            continue;
        }
        json words = json::array();
        for (int i = 0; i < field.Words; ++i) {
            words.push_back(setting.Word(field.FirstWord + i));
        }
        fields[std::string(field.Name)] = words;
    }
    return fields;
}

std::optional<logger::SampleRow> RowNamed(std::string_view name) {
    for (const auto& [each, row] : RowNames) {
        if (each == name) {
            return row;
        }
    }
    return std::nullopt;
}

// "--sample NAME=MS" onto the screen; false (told) when it names no row or no period.
bool ApplySample(logger::SettingView& view, const std::string& option,
                 const logger::MemoryTable& table) {
    const auto equals = option.find('=');
    const auto row = RowNamed(std::string_view(option).substr(0, equals));
    int ms = -1;
    if (equals != std::string::npos) {
        const char* first = option.data() + equals + 1;
        const char* last = option.data() + option.size();
        const auto [end, error] = std::from_chars(first, last, ms);
        if (error != std::errc{} || end != last || first == last) {
            ms = -1;
        }
    }
    const int column = logger::PeriodIndex(ms);
    if (!row || (ms != 0 && column < 0)) {
        Fail("--sample " + option +
             ": NAME=MS with NAME one of Ne TH VFW VRW VB VM1 VM2 VM3 VM4 "
             "and MS one of 0 5 10 25 50 100 300");
        return false;
    }
    logger::ClickSampling(view, *row, column < 0 ? 0 : column, column >= 0, table);
    return true;
}

void ApplySwitch(logger::SettingView& view, logger::OnOffItem item,
                 const std::optional<bool>& value, const logger::MemoryTable& table) {
    if (value) {
        logger::ClickOnOff(view, item, true, *value, table);
    }
}

void ApplyMask(logger::SettingView& view, logger::SensorMenu low, logger::SensorMenu high,
               const std::optional<int>& mask) {
    if (!mask) {
        return;
    }
    if (logger::SensorMenuTicked(view, low) != ((*mask & 1) != 0)) {
        logger::ToggleSensorMenu(view, low);
    }
    if (logger::SensorMenuTicked(view, high) != ((*mask & 2) != 0)) {
        logger::ToggleSensorMenu(view, high);
    }
}

bool ApplyMakeOptions(logger::SettingView& view, const SettingMakeOptions& options,
                      const logger::MemoryTable& table) {
    for (const auto& sample : options.Samples) {
        if (!ApplySample(view, sample, table)) {
            return false;
        }
    }
    ApplySwitch(view, logger::OnOffItem::Deto1, options.Deto1, table);
    ApplySwitch(view, logger::OnOffItem::Deto2, options.Deto2, table);
    ApplySwitch(view, logger::OnOffItem::Lap, options.Lap, table);
    const auto text = [](std::string& box, const std::optional<std::string>& value) {
        if (value) {
            box = *value;
        }
    };
    text(view.StartNe, options.StartNe);
    text(view.StartTh, options.StartTh);
    text(view.Shift, options.Shift);
    text(view.CmF, options.CmFront);
    text(view.CmR, options.CmRear);
    if (options.PulseFront) {
        view.PulseF = *options.PulseFront - 1;
    }
    if (options.PulseRear) {
        view.PulseR = *options.PulseRear - 1;
    }
    if (options.Engine) {
        view.Engine = static_cast<logger::Engine>(*options.Engine);
    }
    ApplyMask(view, logger::SensorMenu::FrSus, logger::SensorMenu::RrSus, options.Sus);
    ApplyMask(view, logger::SensorMenu::Laf1, logger::SensorMenu::Laf2, options.Laf);
    return true;
}

// The check of the window's send; false (told) for a refused field.
bool Checked(logger::SettingView& view) {
    const logger::SettingFieldError field = logger::CheckSetting(view);
    if (field == logger::SettingFieldError::None) {
        return true;
    }
    Fail("Inputted data are not correct. (" + std::string(logger::FieldControlName(field)) + ")");
    return false;
}

} // namespace

bool MemoryTableFor(const std::optional<std::filesystem::path>& file, logger::MemoryTable& table) {
    table = logger::DefaultMemoryTable();
    layout::FileFailure failure;
    if (file && !logger::LoadMemoryTable(*file, table, failure)) {
        Fail("The memory table can not be read: " + file->string() + " (" +
             failure.Error.message() + ")");
        return false;
    }
    return true;
}

void PrintSetting(const logdata::LogHeader& setting, const logger::MemoryTable& table,
                  bool asJson) {
    logger::SettingView view = logger::ClearedSettingView();
    logger::ShowSetting(view, setting, table);
    if (!asJson) {
        PrintView(view);
        return;
    }
    std::cout << json{{"fields", FieldsJson(setting)},
                      {"LoggingTime", view.TotalTime},
                      {"TotalBytesPer300ms", view.TotalBytes}}
                     .dump()
              << '\n';
}

int SettingShow(const SettingShowOptions& options) {
    logger::MemoryTable table{};
    if (!MemoryTableFor(options.MemoryTable, table)) {
        return 1;
    }
    layout::FileFailure failure;
    const auto setting = logger::LoadSetting(options.Input, failure);
    if (!setting) {
        return Fail("The setting can not be read: " + options.Input.string() + " (" +
                    failure.Error.message() + ")");
    }
    PrintSetting(*setting, table, options.Json);
    return 0;
}

int SettingMake(const SettingMakeOptions& options) {
    const logger::MemoryTable table = logger::DefaultMemoryTable();
    const logdata::LogHeader fresh = logdata::FreshSetting();
    logger::SettingView view = logger::ClearedSettingView();
    logger::ShowSetting(view, fresh, table);
    if (!ApplyMakeOptions(view, options, table) || !Checked(view)) {
        return 1;
    }
    const logdata::LogHeader setting = logger::BuildSetting(view, fresh, logger::NowLocal());
    layout::FileFailure failure;
    if (!logger::SaveSetting(options.Output, setting, failure)) {
        return Fail("The setting can not be written: " + options.Output.string() + " (" +
                    failure.Error.message() + ")");
    }
    return 0;
}

int ReadLoggerSetting(logger::LoggerLink& link, const logger::MemoryTable& table, bool asJson) {
    // As the setting window reads it: a logger that is acquiring is neither stopped nor waited
    // for.
    const logger::ActionOptions options{.WhenAcquiring = logger::WhenAcquiring::LetThrough,
                                        .WaitUntilReady = false,
                                        .GiveBackAcquisition = false};
    TlmSettingData record{};
    if (!logger::RunLoggerAction(link, options, [&](logger::ActionContext&) {
             return logger::ReadSetting(link, record);
         }).Done) {
        return 1;
    }
    PrintSetting(logger::HeaderOf(record), table, asJson);
    return 0;
}

int SendLoggerSetting(logger::LoggerLink& link, const std::filesystem::path& file) {
    layout::FileFailure failure;
    const auto loaded = logger::LoadSetting(file, failure);
    if (!loaded) {
        return Fail("The setting can not be read: " + file.string() + " (" +
                    failure.Error.message() + ")");
    }
    logger::SettingView view = logger::ClearedSettingView();
    logger::ShowSetting(view, *loaded, logger::DefaultMemoryTable());
    if (!Checked(view)) {
        return 1;
    }
    logdata::LogHeader setting = logger::BuildSetting(view, *loaded, logger::NowLocal());
    if (!logger::SendSettingToLogger(link, setting)) {
        return 1;
    }
    bool mustRelease = true;
    logger::ReleaseLogger(link, mustRelease, false);
    return mustRelease ? 1 : 0;
}

} // namespace torvane::cli
