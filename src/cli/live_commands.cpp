#include "cli/live_commands.h"

#include "cli/cli_support.h"
#include "layout/file_image.h"
#include "logger/hex_dump.h"
#include "logger/monitor.h"
#include "logger/service_mode.h"

#include <chrono>
#include <iostream>
#include <thread>

namespace torvane::cli {
namespace {

using logger::MonitorField;
using nlohmann::json;

void PrintReading(const logger::Monitor& monitor, double ms, bool asJson) {
    const logger::MonitorValues& values = monitor.Values();
    if (asJson) {
        json shown = json::object();
        for (std::size_t i = 0; i < values.size(); ++i) {
            // A throttle without calibration shows nothing, and has no key.
            if (!values[i].Text.empty()) {
                shown[logger::MonitorFieldKey(static_cast<MonitorField>(i))] =
                    JsonNumber(values[i].Value);
            }
        }
        std::cout << json{{"t", JsonNumber(ms)}, {"values", shown}}.dump() << std::endl;
        return;
    }
    std::string line;
    for (std::size_t i = 0; i < values.size(); ++i) {
        line += (i == 0 ? "" : "  ") +
                std::string(logger::MonitorFieldKey(static_cast<MonitorField>(i))) + " " +
                (values[i].Text.empty() ? "-" : values[i].Text);
    }
    std::cout << line << std::endl;
}

} // namespace

int Monitor(logger::LoggerLink& link, const LoggerOptions& options) {
    const Environment environment = LoadEnvironment(link.Sink);
    logger::Monitor monitor(link, environment.Laf);
    if (!monitor.Open()) {
        return 1;
    }
    const auto start = std::chrono::steady_clock::now();
    auto since = [&start] {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
            .count();
    };
    if (!options.Json) {
        const logger::MonitorHeader& header = monitor.Header();
        std::cout << "program  " << header.Program << "\nsetting  " << header.SettingTime
                  << "\nstart    " << header.StartCondition << '\n';
    }
    PrintReading(monitor, 0.0, options.Json);
    auto next = start;
    for (int reading = 1; reading < options.Count; ++reading) {
        next += std::chrono::milliseconds(options.Interval);
        std::this_thread::sleep_until(next);
        monitor.Tick();
        if (monitor.State() != logger::MonitorState::Polling) {
            return 1;
        }
        PrintReading(monitor, std::round(since()), options.Json);
    }
    return 0;
}

int Dump(logger::LoggerLink& link, const LoggerOptions& options) {
    const bool identity = options.What == "identity";
    logger::ServiceMode service(link.Driver, link.Sink, {});
    if (!(identity ? service.ReadSpecialData() : service.ReadErrorCode())) {
        return 1;
    }
    const auto bytes =
        service.Bytes(identity ? logger::ServiceDump::SpecialData : logger::ServiceDump::ErrorCode);
    if (!options.Hex) {
        return logger::SaveDump(bytes, options.Output, link.Sink) ? 0 : 1;
    }
    const std::string text = service.DumpText() + "\r\n";
    std::filesystem::path temporary = options.Output;
    temporary += ".~tmp";
    layout::FileFailure failure;
    if (!layout::ReplaceFileImage(
            options.Output, temporary,
            std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()), failure)) {
        shell::ShowRunTimeError(link.Sink, layout::DescribeFailure(failure));
        return 1;
    }
    return 0;
}

int Service(logger::LoggerLink& link, const LoggerOptions& options) {
    logger::ServiceFunction function = logger::ServiceFunction::InitialConfiguration;
    if (options.What == "test1") {
        function = logger::ServiceFunction::Test1;
    } else if (options.What == "test2") {
        function = logger::ServiceFunction::Test2;
    }
    logger::ServiceMode service(link.Driver, link.Sink, {});
    const bool completed = service.RunFunction(function);
    if (!service.DumpText().empty()) {
        std::cout << service.DumpText() << '\n';
    }
    return completed ? 0 : 1;
}

} // namespace torvane::cli
