#include "cli/render_page.h"

#include "cli/cli_support.h"
#include "output/paper_names.h"
#include "render/hard_copy_page.h"

#include <algorithm>
#include <cctype>

namespace torvane::cli {

bool IsPdfOutput(const std::filesystem::path& output) {
    std::string extension = output.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".pdf";
}

std::string CheckLayersAndPage(const RenderOptions& options) {
    if (options.Layers.size() > MaxRenderLayers) {
        return "--layer: at most two runs go over the first";
    }
    if (IsPdfOutput(options.Output)) {
        const auto number = output::PaperNumberOf(options.Paper);
        if (!number || !render::TablePaperSize(*number).isValid()) {
            return "--paper: no paper called \"" + options.Paper + "\"";
        }
    }
    return {};
}

int WritePdfOutput(const RenderOptions& options, const QImage& picture) {
    const render::PdfPage page{
        .PageSize = render::TablePaperSize(output::PaperNumberOf(options.Paper).value_or(0)),
        .Orientation = options.Landscape ? QPageLayout::Landscape : QPageLayout::Portrait,
        .Zoom = options.Zoom};
    const std::string failure =
        render::WritePdfPage(options.Output, picture, render::ScreenDpi, page);
    if (!failure.empty()) {
        return Fail("cannot write " + options.Output.string() + ": " + failure);
    }
    return 0;
}

} // namespace torvane::cli
