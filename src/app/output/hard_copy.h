#pragma once
// HardCopy: a window printed as it stands on the screen. The print dialog asks for the job;
// the window's pixels, less its frame as the caller's mode says, are painted centred on the
// page at the zoom, under the hourglass. A failure is told through the general failure report.

#include "output/print_dialog.h"

#include <QImage>

class QWidget;

namespace torvane::app {

// The window's picture: its frame window (the sub-window of the frame that holds it, title bar
// included) less the margins of `mode` (0 and 2 cut the frame, any other nothing). A window
// without a frame of the program's own is its own picture, with nothing to cut.
QImage CaptureWindow(QWidget& form, int mode);

// The job on its printer: the PDF file written whole or not at all, or the printer's pages.
// False after telling the operator through the sink.
bool PrintPicture(const QImage& picture, double pictureDpi, const PrintJob& job,
                  shell::MessageSink& sink);

// The print dialog, then the window printed. False when cancelled or failed.
bool HardCopy(QWidget& form, int mode, PrintContext& context);

// The context the desktop keeps for the run; PrintWindow uses it. Null removes it.
void InstallPrintContext(PrintContext* context);
// mnuPrint of any window: HardCopy with the installed context.
bool PrintWindow(QWidget& form, int mode);

} // namespace torvane::app
