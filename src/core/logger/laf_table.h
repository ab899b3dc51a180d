#pragma once
// The air/fuel table: converts the voltage of an air/fuel sensor to an air/fuel ratio through
// LAF_DATA.CSV in the INT folder, a table the operator may edit (ratio,voltage per line, in
// rising voltage). Read once at start; an edit takes effect at the next start.

#include "shell/message_sink.h"

#include <filesystem>
#include <string>
#include <vector>

namespace torvane::logger {

inline constexpr const char* LafFileName = "LAF_DATA.CSV";

struct LafPoint {
    double Af = 0.0;
    double Volt = 0.0;
};

class LafTable {
public:
    // Without a loaded table a voltage passes through unchanged.
    double ConvertLaf(double volt) const;

    bool Loaded() const { return loaded_; }
    const std::vector<LafPoint>& Points() const { return points_; }
    void SetPoints(std::vector<LafPoint> points);
    void Unload() { loaded_ = false; }

private:
    double Interpolate(double volt) const;
    std::vector<LafPoint> points_;
    bool loaded_ = false;
};

// The sixteen lines written when the file is missing: a straight line from 0 V at 9.0 to
// 5 V at 18.0, voltages to two decimals.
std::vector<LafPoint> DefaultLafPoints();
// The file text of a table: "ratio,voltage" in shortest decimal form, CR LF line ends.
std::string LafFileText(const std::vector<LafPoint>& points);

// Loads INT/LAF_DATA.CSV, writing the default table first when the file is missing. A table that
// cannot be written leaves conversion off; a field that is not a number reads as 0. A read
// failure, or a FIFO or a device in place of the file, is reported as a run-time error and leaves
// the table as it was.
void LoadLafTable(LafTable& table, const std::filesystem::path& initDir, shell::MessageSink& sink);

} // namespace torvane::logger
