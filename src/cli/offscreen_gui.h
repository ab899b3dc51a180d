#pragma once
// A Gui application for commands that draw pictures: fonts and images, never a screen.

#include <QGuiApplication>

#include <filesystem>

namespace torvane::cli {

class OffscreenGui {
public:
    // Qt asks for a private runtime folder, which a batch job outside a login session lacks;
    // runtimeDir, an owner-only folder of the command's own, serves when none is set.
    explicit OffscreenGui(const std::filesystem::path& runtimeDir);

private:
    static int& Prepared(const std::filesystem::path& runtimeDir);

    char name_[12] = "torvane-cli";
    char* argv_[2] = {name_, nullptr};
    QGuiApplication application_;
};

} // namespace torvane::cli
