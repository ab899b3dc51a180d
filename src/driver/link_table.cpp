#include "link_table.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "byte_order.h"

namespace torvane::tlm {
namespace {

constexpr std::uint32_t HandleMagic = 0x4c4d4c54; // "TLML"
// Far more than one program keeps open: a link lasts one user action.
constexpr std::size_t SlotCount = 64;

struct Slot {
    std::uint64_t Serial = 0; // 0: free
    std::shared_ptr<tlm::Link> Link;
};

struct Handle {
    std::uint32_t Magic = 0;
    std::uint32_t Slot = 0;
    std::uint64_t Serial = 0;
};

struct Table {
    std::mutex Mutex;
    std::array<Slot, SlotCount> Slots;
    std::uint64_t LastSerial = 0;
};

Table& TheTable() {
    static Table table;
    return table;
}

Handle ReadHandle(const TlmStatus& status) {
    const std::span<const std::uint8_t> bytes(status.bytDriver);
    return {GetLittleEndian<std::uint32_t>(bytes, 0), GetLittleEndian<std::uint32_t>(bytes, 4),
            GetLittleEndian<std::uint64_t>(bytes, 8)};
}

void WriteHandle(const Handle& handle, TlmStatus& status) {
    const std::span<std::uint8_t> bytes(status.bytDriver);
    PutLittleEndian(bytes, 0, handle.Magic);
    PutLittleEndian(bytes, 4, handle.Slot);
    PutLittleEndian(bytes, 8, handle.Serial);
}

// The slot of a valid handle; the table's mutex must be held.
Slot* Lookup(Table& table, const TlmStatus& status) {
    const Handle handle = ReadHandle(status);
    if (handle.Magic != HandleMagic || handle.Slot >= SlotCount || handle.Serial == 0) {
        return nullptr;
    }
    Slot& slot = table.Slots[handle.Slot];
    return slot.Serial == handle.Serial ? &slot : nullptr;
}

} // namespace

bool RegisterLink(std::shared_ptr<Link> link, TlmStatus& status) {
    Table& table = TheTable();
    std::lock_guard lock(table.Mutex);
    const auto free = std::find_if(table.Slots.begin(), table.Slots.end(),
                                   [](const Slot& slot) { return slot.Serial == 0; });
    if (free == table.Slots.end()) {
        return false;
    }
    free->Serial = ++table.LastSerial;
    free->Link = std::move(link);
    WriteHandle({HandleMagic, static_cast<std::uint32_t>(free - table.Slots.begin()), free->Serial},
                status);
    return true;
}

std::shared_ptr<Link> FindLink(const TlmStatus& status) {
    Table& table = TheTable();
    std::lock_guard lock(table.Mutex);
    const Slot* slot = Lookup(table, status);
    return slot != nullptr ? slot->Link : nullptr;
}

std::shared_ptr<Link> RemoveLink(TlmStatus& status) {
    Table& table = TheTable();
    std::lock_guard lock(table.Mutex);
    Slot* slot = Lookup(table, status);
    if (slot == nullptr) {
        return nullptr;
    }
    slot->Serial = 0;
    std::fill(std::begin(status.bytDriver), std::end(status.bytDriver), std::uint8_t{0});
    return std::exchange(slot->Link, nullptr);
}

} // namespace torvane::tlm
