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
constexpr std::size_t Slots = 64;

struct Slot {
    std::uint64_t serial = 0; // 0: free
    std::shared_ptr<Link> link;
};

struct Handle {
    std::uint32_t magic = 0;
    std::uint32_t slot = 0;
    std::uint64_t serial = 0;
};

struct Table {
    std::mutex mutex;
    std::array<Slot, Slots> slots;
    std::uint64_t lastSerial = 0;
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
    PutLittleEndian(bytes, 0, handle.magic);
    PutLittleEndian(bytes, 4, handle.slot);
    PutLittleEndian(bytes, 8, handle.serial);
}

// The slot of a valid handle; the table's mutex must be held.
Slot* Lookup(Table& table, const TlmStatus& status) {
    const Handle handle = ReadHandle(status);
    if (handle.magic != HandleMagic || handle.slot >= Slots || handle.serial == 0) {
        return nullptr;
    }
    Slot& slot = table.slots[handle.slot];
    return slot.serial == handle.serial ? &slot : nullptr;
}

} // namespace

bool RegisterLink(std::shared_ptr<Link> link, TlmStatus& status) {
    Table& table = TheTable();
    std::lock_guard lock(table.mutex);
    const auto free = std::find_if(table.slots.begin(), table.slots.end(),
                                   [](const Slot& slot) { return slot.serial == 0; });
    if (free == table.slots.end()) {
        return false;
    }
    free->serial = ++table.lastSerial;
    free->link = std::move(link);
    WriteHandle({HandleMagic, static_cast<std::uint32_t>(free - table.slots.begin()), free->serial},
                status);
    return true;
}

std::shared_ptr<Link> FindLink(const TlmStatus& status) {
    Table& table = TheTable();
    std::lock_guard lock(table.mutex);
    const Slot* slot = Lookup(table, status);
    return slot != nullptr ? slot->link : nullptr;
}

std::shared_ptr<Link> RemoveLink(TlmStatus& status) {
    Table& table = TheTable();
    std::lock_guard lock(table.mutex);
    Slot* slot = Lookup(table, status);
    if (slot == nullptr) {
        return nullptr;
    }
    slot->serial = 0;
    std::fill(std::begin(status.bytDriver), std::end(status.bytDriver), std::uint8_t{0});
    return std::exchange(slot->link, nullptr);
}

} // namespace torvane::tlm
