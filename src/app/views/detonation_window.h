#pragma once
// The detonation map window (frmTLM0030, "DETONATION MAP"): the picture of both maps with their
// labels laid over it, the read-out of a pressed cell, saving, closing. It mirrors core's
// views::DetonationMapState and paints what core returns; several can be open at once.

#include "render/detonation_picture.h"
#include "views/detonation_map.h"

#include <QImage>
#include <QMainWindow>

#include <array>
#include <filesystem>
#include <functional>
#include <optional>

class QLabel;

namespace torvane::app {

// Where the window asks for the file to save the map to (the file dialog in mode 4).
using DetonationSaveChoice = std::function<std::optional<std::filesystem::path>(QWidget* owner)>;

class DetonationWindow : public QMainWindow {
    Q_OBJECT
public:
    DetonationWindow(shell::MessageSink& sink, DetonationSaveChoice chooseSave,
                     QWidget* parent = nullptr);
    ~DetonationWindow() override;
    DetonationWindow(const DetonationWindow&) = delete;
    DetonationWindow& operator=(const DetonationWindow&) = delete;

    // Clears the window and reads the file. False after the operator has been told why; the
    // caller then discards the window.
    bool Load(views::DetonationSource source, const std::filesystem::path& path);

    const views::DetonationMapState& State() const { return state_; }
    // The picture as painted (picDeto), labels and covers apart.
    const QImage& Picture() const { return picture_; }

    // mnuSave: the map's bytes to a file the operator chooses.
    void Save();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildMenu();
    void BuildLabels();
    void ShowState();
    void Press(QPoint at);

    shell::MessageSink& sink_;
    DetonationSaveChoice chooseSave_;
    views::DetonationMapState state_;
    bool loaded_ = false;
    QImage picture_;
    QLabel* picDeto_;
    std::array<QLabel*, render::DetonationLabelCount> labels_{};
    std::array<std::array<QWidget*, 3>, views::MapCount> covers_{};
};

} // namespace torvane::app
