#pragma once
// What torvane-cli render adds to the PNG picture: further runs as layers, and a PDF page
// printed through the desktop's print path.

#include "cli/commands.h"

#include <QImage>

#include <filesystem>
#include <string>

namespace torvane::cli {

// At most this many runs go over the first.
inline constexpr std::size_t MaxRenderLayers = 2;

// An output whose name ends in ".pdf", in any case, is a page.
bool IsPdfOutput(const std::filesystem::path& output);

// The layer count and a PDF's paper, checked before any work; empty when they hold, else why
// not.
std::string CheckLayersAndPage(const RenderOptions& options);

// The picture on one page of the PDF file OUT, as the print dialog's "PDF file" prints a window:
// centred at the zoom on the paper, the page written whole or not at all. The exit code.
int WritePdfOutput(const RenderOptions& options, const QImage& picture);

} // namespace torvane::cli
