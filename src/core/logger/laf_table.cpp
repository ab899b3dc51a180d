#include "logger/laf_table.h"

#include "shell/number_format.h"
#include "shell/regular_file.h"
#include "shell/rounding.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <string_view>
#include <system_error>

namespace torvane::logger {
namespace fs = std::filesystem;
namespace {

// Far above any table an operator writes by hand, so a stray large file is not read in whole.
constexpr std::size_t MaxLafFileSize = 1 << 20;

std::string_view Trim(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) {
        return {};
    }
    const auto last = text.find_last_not_of(" \t");
    return text.substr(first, last - first + 1);
}

// A field that is wholly a finite decimal number (blanks around it allowed) gives its value,
// else 0: "nan" and "inf" read as numbers but are none a table can hold.
double NumericField(std::string_view field) {
    field = Trim(field);
    if (!field.empty() && field.front() == '+') {
        field.remove_prefix(1);
    }
    double value = 0.0;
    const auto [ptr, ec] = std::from_chars(field.data(), field.data() + field.size(), value);
    if (field.empty() || ec != std::errc{} || ptr != field.data() + field.size() ||
        !std::isfinite(value)) {
        return 0.0;
    }
    return value;
}

LafPoint ParseLine(std::string_view line) {
    if (!line.empty() && line.back() == '\r') {
        line.remove_suffix(1);
    }
    const auto comma = line.find(',');
    LafPoint point;
    point.Af = NumericField(line.substr(0, comma));
    if (comma != std::string_view::npos) {
        // At most two fields: a further comma makes the second field no number.
        point.Volt = NumericField(line.substr(comma + 1));
    }
    return point;
}

bool WriteDefaultTable(const fs::path& file) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out << LafFileText(DefaultLafPoints());
    out.close();
    return !out.fail();
}

} // namespace

double LafTable::ConvertLaf(double volt) const {
    if (!loaded_ || points_.empty()) {
        return volt;
    }
    // Extreme points of a table edited by hand can overflow; show nothing rather than infinity.
    const double ratio = Interpolate(volt);
    return std::isfinite(ratio) ? ratio : 0.0;
}

double LafTable::Interpolate(double volt) const {
    if (volt == 0.0) {
        return 0.0;
    }
    const LafPoint& first = points_.front();
    if (volt <= first.Volt) {
        return first.Volt <= 0.0 ? 0.0 : first.Af / first.Volt * volt;
    }
    const LafPoint& last = points_.back();
    if (volt >= last.Volt) {
        // A damaged table may end at 0 V; show nothing rather than an infinite ratio.
        return last.Volt == 0.0 ? 0.0 : last.Af / last.Volt * volt;
    }
    for (std::size_t i = 1; i < points_.size(); ++i) {
        if (points_[i].Volt >= volt) {
            const LafPoint& below = points_[i - 1];
            const LafPoint& above = points_[i];
            return (above.Af - below.Af) / (above.Volt - below.Volt) * (volt - below.Volt) +
                   below.Af;
        }
    }
    return volt;
}

void LafTable::SetPoints(std::vector<LafPoint> points) {
    points_ = std::move(points);
    loaded_ = true;
}

std::vector<LafPoint> DefaultLafPoints() {
    std::vector<LafPoint> points;
    for (int k = 0; k < 16; ++k) {
        const double af = 9.0 + 0.5 * k;
        const double volt = shell::RoundHalfEven((5.0 / 9.0 * af - 5.0) * 100.0) / 100.0;
        points.push_back({af, volt});
    }
    return points;
}

std::string LafFileText(const std::vector<LafPoint>& points) {
    std::string text;
    for (const LafPoint& point : points) {
        text += shell::ShortestText(point.Af) + "," + shell::ShortestText(point.Volt) + "\r\n";
    }
    return text;
}

void LoadLafTable(LafTable& table, const fs::path& initDir, shell::MessageSink& sink) {
    const fs::path file = initDir / LafFileName;
    std::error_code error;
    if (!fs::exists(file, error) && !WriteDefaultTable(file)) {
        table.Unload();
        return;
    }
    std::error_code readError;
    const auto bytes = shell::ReadRegularFile(file, MaxLafFileSize, readError);
    if (!bytes) {
        shell::ShowRunTimeError(
            sink, readError == std::errc::io_error
                      ? shell::RunTimeError{57, "Device I/O error: " + file.string()}
                      : shell::RunTimeError{75, "Path/File access error: " + file.string()});
        return;
    }
    const std::string_view text(reinterpret_cast<const char*>(bytes->data()), bytes->size());
    std::vector<LafPoint> points;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        points.push_back(ParseLine(text.substr(start, end - start)));
        start = end + 1;
    }
    table.SetPoints(std::move(points));
}

} // namespace torvane::logger
