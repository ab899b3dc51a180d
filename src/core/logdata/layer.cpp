#include "logdata/layer.h"

#include "shell/temp_files.h"

namespace torvane::logdata {

int LayerSet::FileNumber(int layer) const {
    return shell::StreamFileNumber(WindowNumber, layer);
}

std::filesystem::path LayerSet::StreamPath(int layer, std::string_view stream) const {
    return TempDir / shell::StreamFileName(stream, FileNumber(layer));
}

} // namespace torvane::logdata
