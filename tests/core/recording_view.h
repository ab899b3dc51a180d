#pragma once
// A window without widgets that notes each step loading asks of it.

#include "load/window_view.h"

#include <string>
#include <vector>

namespace torvane::load::testing {

// Keeps the window steps in order; any of them can be made to fail.
class RecordingView : public WindowView {
public:
    bool ShowLayerPanel(int layer) override {
        return Note("panel " + std::to_string(layer), !panelFails);
    }
    void CloseLayerPanel(int layer) override { Note("close panel " + std::to_string(layer)); }
    bool SelectLayer(int layer) override {
        return Note("select " + std::to_string(layer), !selectFails);
    }
    bool DrawScales() override { return Note("scales"); }
    bool RedrawGraph() override { return Note("redraw"); }
    void DispValues(bool recalculate) override {
        Note(recalculate ? "values, cursor found again" : "values");
    }

    std::vector<std::string> steps;
    bool panelFails = false;
    bool selectFails = false;

private:
    bool Note(std::string step, bool result = true) {
        steps.push_back(std::move(step));
        return result;
    }
};

} // namespace torvane::load::testing
