#include "logger/simulator_options.h"

#include <CLI/CLI.hpp>

#include <sstream>

namespace torvane::sim {
namespace {

constexpr double LongestRunMinutes = 24 * 60;

// --sense, --result, --drop and --delay each begin a rule; the --on and --times after them
// complete it. CLI11 keeps each option's values apart, so the rules are rebuilt from the order
// of the options on the command line.
struct FaultOptions {
    CLI::Option* Sense = nullptr;
    CLI::Option* Result = nullptr;
    CLI::Option* Drop = nullptr;
    CLI::Option* Delay = nullptr;
    std::int64_t Drops = 0;
    std::vector<int> Delays;
    CLI::Option* On = nullptr;
    CLI::Option* Times = nullptr;
    std::vector<int> Senses;
    std::vector<std::int32_t> Results;
    std::vector<std::string> Entries;
    std::vector<int> Counts;
};

std::vector<FaultRule> BuildRules(const CLI::App& app, const FaultOptions& given) {
    std::vector<FaultRule> rules;
    std::size_t sense = 0, result = 0, delay = 0, on = 0, times = 0;
    bool hasEntry = false, hasTimes = false;
    const auto finish = [&] {
        if (!rules.empty() && !hasEntry) {
            throw CLI::ValidationError("--sense, --result, --drop and --delay need --on ENTRY");
        }
        hasEntry = hasTimes = false;
    };
    for (const CLI::Option* option : app.parse_order()) {
        if (option == given.Sense || option == given.Result) {
            finish();
            FaultRule rule;
            rule.Kind = option == given.Sense ? FaultRule::Fault::Sense : FaultRule::Fault::Result;
            rule.Code =
                option == given.Sense ? given.Senses.at(sense++) : given.Results.at(result++);
            rules.push_back(rule);
        } else if (option == given.Drop || option == given.Delay) {
            finish();
            FaultRule rule;
            rule.Kind = option == given.Drop ? FaultRule::Fault::Drop : FaultRule::Fault::Delay;
            rule.Code = option == given.Drop ? 0 : given.Delays.at(delay++);
            rules.push_back(rule);
        } else if (option == given.On) {
            if (rules.empty() || hasEntry) {
                throw CLI::ValidationError(
                    "--on follows --sense CODE, --result CODE, --drop or --delay MS");
            }
            const std::string& name = given.Entries.at(on++);
            const auto entry = EntryNamed(name);
            if (!entry) {
                throw CLI::ValidationError("--on: unknown entry point \"" + name + "\"; one of " +
                                           std::string(EntryNames()));
            }
            rules.back().Entry = *entry;
            hasEntry = true;
        } else if (option == given.Times) {
            if (rules.empty() || hasTimes) {
                throw CLI::ValidationError(
                    "--times follows --sense CODE, --result CODE, --drop or --delay MS");
            }
            rules.back().Times = given.Counts.at(times++);
            hasTimes = true;
        }
    }
    finish();
    return rules;
}

} // namespace

ParsedOptions ParseSimulatorOptions(const std::vector<std::string>& args) {
    CLI::App app("The virtual logger: a logger device on a local socket, for libtlm to talk to.",
                 "torvane-logger-sim");
    SimulatorOptions options;
    std::string endpoint;
    std::optional<std::string> memoryTableFile;
    std::optional<int> errorCode;
    bool idle = false;
    FaultOptions faults;

    app.add_option("--socket", endpoint,
                   "unix:PATH or tcp:127.0.0.1:PORT (default: TORVANE_LOGGER, else this user's "
                   "socket)");
    app.add_option("--time-scale", options.Logger.TimeScale,
                   "vehicle time per real time: 10 records ten minutes in one")
        ->check(CLI::PositiveNumber);
    app.add_option("--files", options.Files, "recorded runs the logger holds at start")
        ->check(CLI::Range(0, 1000));
    app.add_option("--minutes", options.Minutes, "length of each of those runs")
        ->check(CLI::Range(0.005, LongestRunMinutes));
    app.add_option("--seed", options.Logger.Seed, "seed of the vehicle; run i uses seed + i");
    app.add_option("--mt", memoryTableFile, "MT.DAT: memory per sample by channel and period")
        ->check(CLI::ExistingFile);
    app.add_option("--rate", options.Logger.BytesPerSecond,
                   "link rate of a transfer in bytes per second; 0 is unlimited")
        ->check(CLI::NonNegativeNumber);
    app.add_option("--drop-after-blocks", options.Faults.DropAfterBlocks,
                   "drop the link once, after this many blocks of a transfer")
        ->check(CLI::NonNegativeNumber);
    faults.Sense = app.add_option("--sense", faults.Senses, "answer sense CODE (1..255) ...")
                       ->check(CLI::Range(1, 255))
                       ->expected(1)
                       ->take_all();
    faults.Result = app.add_option("--result", faults.Results, "answer result CODE ...")
                        ->expected(1)
                        ->take_all();
    faults.Drop = app.add_flag("--drop", faults.Drops, "drop the link after answering ...");
    faults.Delay = app.add_option("--delay", faults.Delays, "answer MS (1..600000) late ...")
                       ->check(CLI::Range(1, 600'000))
                       ->expected(1)
                       ->take_all();
    faults.On = app.add_option("--on", faults.Entries, "... on the entry point ENTRY ...")
                    ->expected(1)
                    ->take_all();
    faults.Times = app.add_option("--times", faults.Counts, "... for its next N calls (1)")
                       ->check(CLI::Range(1, 1'000'000))
                       ->expected(1)
                       ->take_all();
    app.add_flag("--broken", options.Broken, "the logger is out of order (state 240)");
    app.add_option("--error-state", errorCode, "the logger has stopped on error CODE (1..255)")
        ->check(CLI::Range(1, 255));
    app.add_flag("--idle", idle, "start idle instead of acquiring");
    app.add_flag("--reversed-throttle", options.Logger.ReversedThrottle,
                 "the throttle sensor is fitted the wrong way round: its reading falls as the "
                 "throttle opens, so sensor initialisation takes a wrong pair");

    std::vector<std::string> argvText{"torvane-logger-sim"};
    argvText.insert(argvText.end(), args.begin(), args.end());
    std::vector<const char*> argv;
    for (const auto& text : argvText) {
        argv.push_back(text.c_str());
    }

    ParsedOptions parsed;
    try {
        app.parse(static_cast<int>(argv.size()), argv.data());
        options.Faults.Rules = BuildRules(app, faults);
        std::string error;
        const auto parsedEndpoint = endpoint.empty() ? link::EndpointFromEnvironment(error)
                                                     : link::ParseEndpoint(endpoint, error);
        if (!parsedEndpoint) {
            throw CLI::ValidationError("--socket: " + error);
        }
        options.Endpoint = *parsedEndpoint;
        if (memoryTableFile) {
            const auto table = LoadMemoryTable(*memoryTableFile);
            if (!table) {
                throw CLI::ValidationError("--mt: " + *memoryTableFile +
                                           " can not be read or is shorter than 56 bytes");
            }
            options.Logger.MemoryTable = *table;
        }
    } catch (const CLI::ParseError& error) {
        std::ostringstream out;
        std::ostringstream err;
        parsed.ExitCode = app.exit(error, out, err) == 0 ? 0 : 2;
        parsed.Message = out.str() + err.str();
        return parsed;
    }
    options.ErrorCode = static_cast<std::uint8_t>(errorCode.value_or(0));
    options.Logger.StartAcquiring = !idle;
    parsed.Options = options;
    return parsed;
}

} // namespace torvane::sim
