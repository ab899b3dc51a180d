#include "graph/item_panel.h"

#include "logdata/channels.h"
#include "shell/common.h"

#include <algorithm>
#include <utility>

namespace torvane::graph {
namespace {

constexpr std::uint32_t White = 0xFFFFFF;
constexpr std::uint32_t Black = 0x000000;

} // namespace

int SlotRowIndex(int layer, int slot) {
    return layer * logdata::SlotCount + slot + 1;
}

int ComputedRowIndex(int layer, int k) {
    return (layer + 1) * 50 + k;
}

MarkColors FileCaptionColors(bool marked) {
    return marked ? MarkColors{0x800000, White} : MarkColors{0xC0C0C0, Black};
}

MarkColors ItemRowColors(bool marked) {
    return marked ? MarkColors{0xFF0000, White} : MarkColors{0xFFFF00, Black};
}

std::string BareFileName(const std::filesystem::path& path) {
    const std::string name = path.filename().string();
    return name.substr(0, name.find('.'));
}

void ItemPanel::ShowLayerPanel(int layer, const std::string& caption,
                               const logdata::LayerRecord& record, const LayerView& view) {
    FileCaption* file = MutableFile(layer);
    if (file == nullptr) {
        files_.push_back({layer, caption, 0, false});
        file = &files_.back();
    }
    file->Caption = caption;
    if (layer == 0) {
        file->Top = FirstFileCaptionTop;
    } else {
        file->Top = panelBottom_;
        panelBottom_ += FileCaptionHeight;
    }
    PlaceLayerItems(layer, record, view, panelBottom_);
}

void ItemPanel::PlaceLayerItems(int layer, const logdata::LayerRecord& record,
                                const LayerView& view, int& top) {
    for (std::size_t index = 0; index < record.ItemChannel.size(); ++index) {
        const int position = static_cast<int>(index);
        const ItemDisplay* display = ItemDisplayOf(view, record, position);
        if (display == nullptr || display->View != 1) {
            continue;
        }
        const bool isSlot = position < logdata::SlotCount;
        if (isSlot ? !record.ItemExists[index]
                   : index - static_cast<std::size_t>(logdata::SlotCount) >=
                         record.FormulaItems.size()) {
            continue;
        }
        ItemRow row;
        row.Layer = layer;
        row.Position = position;
        row.Kinds = record.ItemChannel[index];
        row.LineColor = shell::ColorValue(display->Color);
        row.Top = top;
        if (isSlot) {
            row.Index = SlotRowIndex(layer, position);
            row.Name = std::string(logdata::ChannelName(row.Kinds));
        } else {
            const int k = position - logdata::SlotCount;
            const auto& item = record.FormulaItems[static_cast<std::size_t>(k)];
            row.Index = ComputedRowIndex(layer, k);
            row.Kinds = logdata::ComputedChannel;
            row.FormulaIndex = k;
            row.Name = item.Name;
            row.Unit = item.Unit;
            row.DecimalPoint = item.Decimal;
            row.Italic = true;
        }
        rows_.push_back(std::move(row));
        top += ItemRowHeight;
    }
}

void ItemPanel::RemoveLayerItems(int layer, const logdata::LayerRecord& record,
                                 const LayerView& view) {
    const FileCaption* file = File(layer);
    if (file == nullptr) {
        return;
    }
    std::erase_if(rows_, [&](const ItemRow& row) { return row.Layer == layer; });
    int end = file->Top + FileCaptionHeight;
    PlaceLayerItems(layer, record, view, end);

    const FileCaption* next = File(layer + 1);
    if (next == nullptr) {
        panelBottom_ = end;
        return;
    }
    const int difference = end - next->Top;
    if (difference != 0) {
        ShiftLaterLayers(layer, difference);
    }
}

void ItemPanel::ShiftLaterLayers(int layer, int difference) {
    for (FileCaption& file : files_) {
        if (file.Layer > layer) {
            file.Top += difference;
        }
    }
    int lowest = 0;
    for (ItemRow& row : rows_) {
        if (row.Layer > layer) {
            row.Top += difference;
        }
        lowest = std::max(lowest, row.Top + ItemRowHeight);
    }
    // A later layer without rows ends at its caption.
    for (const FileCaption& file : files_) {
        lowest = std::max(lowest, file.Top + FileCaptionHeight);
    }
    panelBottom_ = lowest;
}

void ItemPanel::CloseLayer(int layer) {
    std::erase_if(rows_, [&](const ItemRow& row) { return row.Layer == layer; });
    if (const FileCaption* file = File(layer)) {
        panelBottom_ = layer == 0 ? FirstPanelBottom : file->Top;
    }
    std::erase_if(files_, [&](const FileCaption& file) { return file.Layer == layer; });
}

void ItemPanel::ClearSelection() {
    for (FileCaption& file : files_) {
        file.CheckMark = false;
    }
    for (ItemRow& row : rows_) {
        row.CheckMark = false;
    }
}

void ItemPanel::MarkFile(int layer) {
    ClearSelection();
    if (FileCaption* file = MutableFile(layer)) {
        file->CheckMark = true;
    }
}

bool ItemPanel::MarkRow(int index) {
    ClearSelection();
    const auto row = std::find_if(rows_.begin(), rows_.end(),
                                  [&](const ItemRow& r) { return r.Index == index; });
    if (row == rows_.end()) {
        return false;
    }
    row->CheckMark = true;
    return true;
}

void ItemPanel::SelectItem(int layer, int position) {
    ClearSelection();
    if (ItemRow* row = FindRow(layer, position)) {
        row->CheckMark = true;
    }
}

int ItemPanel::CheckedLayer() const {
    for (const FileCaption& file : files_) {
        if (file.CheckMark) {
            return file.Layer;
        }
    }
    const ItemRow* row = MarkedRow();
    return row != nullptr ? row->Layer : -1;
}

const ItemRow* ItemPanel::MarkedRow() const {
    const auto row =
        std::find_if(rows_.begin(), rows_.end(), [](const ItemRow& r) { return r.CheckMark; });
    return row == rows_.end() ? nullptr : &*row;
}

const ItemRow* ItemPanel::Row(int index) const {
    const auto row = std::find_if(rows_.begin(), rows_.end(),
                                  [&](const ItemRow& r) { return r.Index == index; });
    return row == rows_.end() ? nullptr : &*row;
}

ItemRow* ItemPanel::FindRow(int layer, int position) {
    const auto row = std::find_if(rows_.begin(), rows_.end(), [&](const ItemRow& r) {
        return r.Layer == layer && r.Position == position;
    });
    return row == rows_.end() ? nullptr : &*row;
}

void ItemPanel::RenameFile(int layer, const std::string& caption) {
    if (FileCaption* file = MutableFile(layer)) {
        file->Caption = caption;
    }
}

const FileCaption* ItemPanel::File(int layer) const {
    const auto file = std::find_if(files_.begin(), files_.end(),
                                   [&](const FileCaption& f) { return f.Layer == layer; });
    return file == files_.end() ? nullptr : &*file;
}

FileCaption* ItemPanel::MutableFile(int layer) {
    return const_cast<FileCaption*>(std::as_const(*this).File(layer));
}

} // namespace torvane::graph
