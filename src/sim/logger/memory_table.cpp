#include "logger/memory_table.h"

#include "shell/regular_file.h"

#include <algorithm>

namespace torvane::sim {

std::optional<MemoryTable> LoadMemoryTable(const std::filesystem::path& file) {
    std::error_code error;
    MemoryTable table{};
    const auto bytes = shell::ReadRegularFile(file, table.size(), error);
    if (!bytes || bytes->size() < table.size()) {
        return std::nullopt;
    }
    std::copy_n(bytes->begin(), table.size(), table.begin());
    return table;
}

std::int64_t BytesPer300Ms(const MemoryTable& table, const logdata::LogHeader& setting) {
    return logger::BytesPer300Ms(table, logger::ChoiceOf(setting));
}

} // namespace torvane::sim
