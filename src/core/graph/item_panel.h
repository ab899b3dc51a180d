#pragma once
// The item panel at the left of a graph window: for each layer a file caption (chkFile) and
// below it one row (chkItem) for each item that is shown, and which of them is marked. Rows are
// plain values that the window mirrors into its controls.

#include "graph/layer_view.h"
#include "logdata/layer.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace torvane::graph {

inline constexpr int ItemRowHeight = 15;
inline constexpr int FileCaptionHeight = 18;
// The first row stands below the title time and the first file caption.
inline constexpr int FirstPanelBottom = 36;
inline constexpr int FirstFileCaptionTop = FirstPanelBottom - FileCaptionHeight;

// Control index of a slot's row: layer x 12 + slot + 1; 0 is never a row.
int SlotRowIndex(int layer, int slot);
// Control index of the k-th computed item's row (k from 0): (layer + 1) x 50 + k.
int ComputedRowIndex(int layer, int k);

struct ItemRow {
    int Index = 0; // control index, see SlotRowIndex and ComputedRowIndex
    int Layer = 0;
    int Position = 0;      // index into the layer's ItemChannel
    int Kinds = 0;         // channel number, 99 for a computed item
    int FormulaIndex = -1; // k of a computed item, -1 for a slot
    std::string Name;      // the channel's name, or the computed item's own
    std::string Unit;      // computed items only; a channel's unit comes from the catalogue
    int DecimalPoint = 0;
    bool Italic = false; // computed items
    std::uint32_t LineColor = 0;
    int Top = 0;
    bool CheckMark = false;
    std::string ValueText; // value and unit at the cursor, written by the read-out
};

struct FileCaption {
    int Layer = 0;
    std::string Caption; // file name without folder and extension
    int Top = 0;
    bool CheckMark = false;
};

// Back and text colours of a marked or unmarked control (0xBBGGRR). For a row the colour bar
// takes the text colour as its fill; its border keeps the item's LineColor.
struct MarkColors {
    std::uint32_t Back = 0;
    std::uint32_t Text = 0;

    friend bool operator==(const MarkColors&, const MarkColors&) = default;
};
MarkColors FileCaptionColors(bool marked);
MarkColors ItemRowColors(bool marked);

// The caption of a layer's file: the name after the last folder, cut before its first '.'.
std::string BareFileName(const std::filesystem::path& path);

class ItemPanel {
public:
    // Loads the caption of a layer and places its rows at PanelBottom, advancing it. Layer 0's
    // caption stands at the top; a further one goes to PanelBottom, which grows by its height.
    void ShowLayerPanel(int layer, const std::string& caption, const logdata::LayerRecord& record,
                        const LayerView& view);
    // Adds the rows of a layer's shown items from `top` down, 15 pixels apart, and advances
    // `top`. A slot's row exists when its channel is in view and the slot holds data; a computed
    // item's when it is in view.
    void PlaceLayerItems(int layer, const logdata::LayerRecord& record, const LayerView& view,
                         int& top);
    // Takes a layer's rows away and places them again (after a change of View); the captions
    // and rows of later layers move by the difference.
    void RemoveLayerItems(int layer, const logdata::LayerRecord& record, const LayerView& view);
    // Unloads a layer's rows and caption; the panel ends where that caption stood.
    void CloseLayer(int layer);
    // Captions a layer's file anew, after it was saved under another name.
    void RenameFile(int layer, const std::string& caption);

    void ClearSelection();
    void MarkFile(int layer);
    // Marks the row of the control index; false when there is none.
    bool MarkRow(int index);
    // Clears the selection and marks the row of that layer and item, if there is one.
    void SelectItem(int layer, int position);
    // Layer of the marked caption or row; -1 when nothing is marked.
    int CheckedLayer() const;
    // The marked row, if a row (and not a caption) is marked.
    const ItemRow* MarkedRow() const;

    const ItemRow* Row(int index) const;
    ItemRow* FindRow(int layer, int position);
    const FileCaption* File(int layer) const;

    const std::vector<ItemRow>& Rows() const { return rows_; }
    std::vector<ItemRow>& Rows() { return rows_; }
    const std::vector<FileCaption>& Files() const { return files_; }
    int PanelBottom() const { return panelBottom_; }

private:
    FileCaption* MutableFile(int layer);
    void ShiftLaterLayers(int layer, int difference);

    std::vector<FileCaption> files_;
    std::vector<ItemRow> rows_;
    int panelBottom_ = FirstPanelBottom;
};

} // namespace torvane::graph
