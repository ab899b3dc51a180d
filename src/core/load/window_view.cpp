#include "load/window_view.h"

namespace torvane::load {

std::int32_t LapBarHeight(const logdata::LayerSet& layers, int lastLayer) {
    std::int32_t height = 0;
    for (int layer = 0; layer <= lastLayer && layer < logdata::LayerCount; ++layer) {
        if (layers.Layer[static_cast<std::size_t>(layer)].ItemExists[logdata::LapSlot]) {
            height += LapBarRowHeight;
        }
    }
    return height;
}

} // namespace torvane::load
