#pragma once
// The records of tlm.h on the wire: every field in declaration order, little-endian, no padding.
// One ForEachField per record serves both directions, so the writer and the reader cannot
// disagree about the order.

#include <concepts>
#include <cstddef>
#include <type_traits>

#include "tlm.h"
#include "wire.h"

namespace torvane::link {

template <typename Record, typename Plain>
concept RecordOf = std::same_as<std::remove_const_t<Record>, Plain>;

// The logger's part of TlmStatus; bytDriver belongs to the client's library and never travels.
template <RecordOf<TlmStatus> Record, typename Visit>
constexpr void ForEachField(Record& r, Visit&& visit) {
    visit(r.bytSense);
    visit(r.bytState);
    visit(r.bytError);
    visit(r.bytStatus3);
    visit(r.bytFlags);
    visit(r.bytStatus5);
    visit(r.bytStatus6);
    visit(r.bytReserved);
}

template <RecordOf<TlmDownloadEntry> Record, typename Visit>
constexpr void ForEachField(Record& r, Visit&& visit) {
    visit(r.intNumber);
    visit(r.intDone);
    visit(r.lngSeconds);
    visit(r.lngSize);
}

template <RecordOf<TlmSettingData> Record, typename Visit>
constexpr void ForEachField(Record& r, Visit&& visit) {
    visit(r.intSus);
    visit(r.intNeTime);
    visit(r.intThTime);
    visit(r.intVfwTime);
    visit(r.intVrwTime);
    visit(r.intDeto1Time);
    visit(r.intDeto2Time);
    visit(r.intVbTime);
    visit(r.intVmTime);
    visit(r.intPulseF);
    visit(r.intPulseR);
    visit(r.intCmF);
    visit(r.intCmR);
    visit(r.intStartTh);
    visit(r.intStartNe);
    visit(r.intEngine);
    visit(r.intShift);
    visit(r.intThClose);
    visit(r.intThOpen);
    visit(r.intFrZero);
    visit(r.intRrZero);
    visit(r.intMinute);
    visit(r.intHour);
    visit(r.intDay);
    visit(r.intMonth);
    visit(r.intYear);
    visit(r.intReserved29);
    visit(r.intProgram);
    visit(r.intLapOn);
    visit(r.intLaf);
    visit(r.intReserved38);
    visit(r.intReserved40);
}

template <RecordOf<TlmSignalCondition> Record, typename Visit>
constexpr void ForEachField(Record& r, Visit&& visit) {
    visit(r.intNe);
    visit(r.intVfw);
    visit(r.intVrw);
    visit(r.intTh);
    visit(r.intVb);
    visit(r.intVm);
    visit(r.intDeto1);
    visit(r.intDeto2);
    visit(r.intLap);
}

template <RecordOf<TlmSpecialData> Record, typename Visit>
constexpr void ForEachField(Record& r, Visit&& visit) {
    visit(r.bytHead);
    visit(r.bytProgramName);
    visit(r.bytProgramNo);
    visit(r.bytTail);
}

template <RecordOf<TlmInitData> Record, typename Visit>
constexpr void ForEachField(Record& r, Visit&& visit) {
    visit(r.intThClose);
    visit(r.intThOpen);
}

template <RecordOf<TlmDetonationMap> Record, typename Visit>
constexpr void ForEachField(Record& r, Visit&& visit) {
    visit(r.bytLeading);
    visit(r.bytMap1);
    visit(r.bytMap2);
    visit(r.lngRunTime);
    visit(r.lngRunDistance);
    visit(r.intPresent);
}

// Bytes a record takes on the wire. Every record of tlm.h is free of padding, so this equals its
// size (less bytDriver for TlmStatus): the asserts below catch a field left out above.
template <typename Record> constexpr std::size_t WireSize() {
    Record record{};
    std::size_t size = 0;
    ForEachField(record, [&size](const auto& field) { size += sizeof(field); });
    return size;
}
static_assert(WireSize<TlmStatus>() == sizeof(TlmStatus) - sizeof(TlmStatus::bytDriver));
static_assert(WireSize<TlmDownloadEntry>() == sizeof(TlmDownloadEntry));
static_assert(WireSize<TlmSettingData>() == sizeof(TlmSettingData));
static_assert(WireSize<TlmSignalCondition>() == sizeof(TlmSignalCondition));
static_assert(WireSize<TlmSpecialData>() == sizeof(TlmSpecialData));
static_assert(WireSize<TlmInitData>() == sizeof(TlmInitData));
static_assert(WireSize<TlmDetonationMap>() == sizeof(TlmDetonationMap));

// tlm.h packs its records to two bytes, so a record held inside another structure may stand at
// an address where its 32-bit fields cannot be bound to references. The fields are visited on a
// copy aligned for every type they hold; within a record each field sits at its own alignment.
template <typename Record> void PutRecord(PayloadWriter& writer, const Record& record) {
    alignas(std::max_align_t) const Record aligned = record;
    ForEachField(aligned, [&writer](const auto& field) { writer.Put(field); });
}

template <typename Record> bool GetRecord(PayloadReader& reader, Record& record) {
    alignas(std::max_align_t) Record aligned = record;
    ForEachField(aligned, [&reader](auto& field) { reader.Get(field); });
    record = aligned;
    return reader.Ok();
}

} // namespace torvane::link
