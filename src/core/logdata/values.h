#pragma once
// Engineering values: the conversion of a raw reading, and the value of a slot at a time,
// read from the layer's streams by position.

#include "logdata/layer.h"
#include "logger/laf_table.h"

#include <span>

namespace torvane::logdata {

// The time scale of a window: PixelsPerStep columns stand for MsPerStep milliseconds.
struct TimeScale {
    int PixelsPerStep = 1;
    int MsPerStep = 100;
};

// The engineering value of a raw reading (which may be interpolated). A reading of 0 or less
// is no reading and stands as it is; a converted value below 0 shows as 0.
double RawToValue(const LogHeader& header, int channel, double raw, const logger::LafTable& laf);
// The conversion table alone, without either guard; the export applies guards of its own.
double ConvertReading(const LogHeader& header, int channel, double raw,
                      const logger::LafTable& laf);
// ConvertReading over a block of readings in place, the channel's rule chosen once.
void ConvertReadings(const LogHeader& header, int channel, std::span<double> readings,
                     const logger::LafTable& laf);

// Interval in ms of the stream that a channel reads: its sampling entry, 300 for LAP.
int ChannelSampleTime(const LogHeader& header, int channel);

class ValueReader {
public:
    ValueReader(const LayerSet& layers, const logger::LafTable& laf)
        : layers_(layers)
        , laf_(laf) {}

    // The value of item `slot` (an index of ItemChannel) of a layer at time t in ms. A missing
    // or short stream gives 0: this runs on every cursor move and says nothing.
    double ValueAt(int layer, int slot, double time, TimeScale scale) const;

private:
    double OrdinaryValue(int layer, int channel, double time) const;
    double DetonationValue(int layer, int channel, double time, TimeScale scale) const;
    double LapValue(int layer, double time) const;
    double ComputedValue(int layer, const FormulaItem& item, double time) const;

    const LayerSet& layers_;
    const logger::LafTable& laf_;
};

} // namespace torvane::logdata
