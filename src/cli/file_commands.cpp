// pack, unpack and generate: commands that make or open logging files without reading them
// as a window would.

#include "cli/cli_support.h"
#include "cli/commands.h"
#include "logdata/channels.h"
#include "logdata/deployment.h"
#include "rlg_container.h"
#include "tlm.h"
#include "vehicle/demo_setting.h"
#include "vehicle/run_file.h"

#include "byte_order.h"

#include <iostream>

namespace torvane::cli {
namespace {

using logdata::LogHeaderSize;

// A raw stream file: far more than the longest run the logger can record.
constexpr std::size_t MaxStreamFileBytes = std::size_t{256} << 20;

std::optional<logdata::LogHeader> ReadHeaderFile(const std::filesystem::path& file) {
    const auto bytes = ReadBinaryFile(file, LogHeaderSize);
    if (!bytes || bytes->size() != LogHeaderSize) {
        return std::nullopt;
    }
    return logdata::LogHeader::FromBytes(
        std::span<const std::uint8_t, LogHeaderSize>(bytes->data(), LogHeaderSize));
}

std::vector<std::int16_t> WordsOf(const std::vector<std::uint8_t>& bytes) {
    std::vector<std::int16_t> words(bytes.size() / 2);
    for (std::size_t i = 0; i < words.size(); ++i) {
        words[i] = GetLittleEndian<std::int16_t>(bytes, 2 * i);
    }
    return words;
}

// An empty result means the writer could not make the file; never write that as a file.
bool WriteLoggingFile(const std::filesystem::path& output, const std::vector<std::uint8_t>& bytes) {
    return !bytes.empty() && rlg::WriteFileAtomically(output, bytes);
}

} // namespace

int Pack(const PackOptions& options) {
    const auto header = ReadHeaderFile(options.Header);
    if (!header) {
        return Fail("The header file must hold exactly 82 bytes: " + options.Header.string());
    }
    rlg::RlgWriter writer(header->ToBytes(), sim::LoggingFileStreams());
    for (const std::string& given : options.Streams) {
        const auto equals = given.find('=');
        const int stream =
            equals == std::string::npos ? -1 : logdata::StreamIndex(given.substr(0, equals));
        if (stream < 0) {
            return Fail("Unknown stream \"" + given.substr(0, equals) +
                        "\": use NAME=FILE with NAME one of Ne TH VFW VRW DETO1 DETO2 VB VM1 "
                        "VM2 VM3 VM4 LAP.");
        }
        const std::filesystem::path file = given.substr(equals + 1);
        const auto bytes = ReadBinaryFile(file, MaxStreamFileBytes);
        if (!bytes) {
            return Fail("Can not read the stream file: " + file.string());
        }
        if (bytes->size() % 2 != 0) {
            return Fail("A stream file holds 16-bit words; this one has an odd length: " +
                        file.string());
        }
        writer.Append(static_cast<std::size_t>(stream), WordsOf(*bytes));
    }
    if (!WriteLoggingFile(options.Output, writer.Finish())) {
        return Fail("Can not write the logging file: " + options.Output.string());
    }
    return 0;
}

int Unpack(const UnpackOptions& options) {
    std::array<std::uint8_t, LogHeaderSize> header{};
    std::int32_t bytesWritten = 0;
    std::int32_t deployCount = 0;
    const int result = decomp_logfile(
        options.Input.string().c_str(), options.Folder.string().c_str(),
        static_cast<std::int16_t>(options.Number), header.data(), &bytesWritten, &deployCount);
    std::cout << "result " << result << "\nDeployCount " << deployCount << '\n';
    if (result != 0) {
        return Fail(logdata::DeployResultMessage(result, options.Input));
    }
    return 0;
}

int Generate(const GenerateOptions& options) {
    logdata::LogHeader setting = sim::DemoSetting();
    if (options.Setting) {
        const auto read = ReadHeaderFile(*options.Setting);
        if (!read) {
            return Fail("A setting file must hold exactly 82 bytes: " + options.Setting->string());
        }
        setting = *read;
    }
    if (!(options.Minutes > 0.0) || options.Minutes > 24 * 60) {
        return Fail("--minutes must lie between 0 and 1440.");
    }
    if (!WriteLoggingFile(options.Output,
                          sim::GenerateRunFile(setting, options.Minutes * 60000.0, options.Seed))) {
        return Fail("Can not write the logging file: " + options.Output.string());
    }
    return 0;
}

} // namespace torvane::cli
