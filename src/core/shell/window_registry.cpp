#include "shell/window_registry.h"

namespace torvane::shell {

WindowRegistry::WindowRegistry()
    : slots_(1) {
}

bool WindowRegistry::Contains(int number) const {
    return number >= 0 && static_cast<std::size_t>(number) < slots_.size();
}

int WindowRegistry::Claim() {
    for (std::size_t number = 1; number < slots_.size(); ++number) {
        if (slots_[number].Free) {
            // A number given up may still carry the logger mark set after its window was gone.
            slots_[number] = Slot{false, 0};
            return static_cast<int>(number);
        }
    }
    slots_.push_back(Slot{false, 0});
    return static_cast<int>(slots_.size() - 1);
}

bool WindowRegistry::AnyFroms() const {
    for (std::size_t number = 1; number < slots_.size(); ++number) {
        if (!slots_[number].Free) {
            return true;
        }
    }
    return false;
}

bool WindowRegistry::DeleteFrom(int number) {
    if (!Contains(number)) {
        return false;
    }
    slots_[static_cast<std::size_t>(number)] = Slot{};
    return true;
}

std::int32_t WindowRegistry::GetLogger(int number) const {
    return Contains(number) ? slots_[static_cast<std::size_t>(number)].Logger : 0;
}

bool WindowRegistry::SetLogger(int number, std::int32_t logger) {
    if (!Contains(number)) {
        return false;
    }
    slots_[static_cast<std::size_t>(number)].Logger = logger;
    return true;
}

bool WindowRegistry::InUse(int number) const {
    return number > 0 && Contains(number) && !slots_[static_cast<std::size_t>(number)].Free;
}

} // namespace torvane::shell
