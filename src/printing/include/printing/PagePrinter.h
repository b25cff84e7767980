#pragma once

#include <QString>

class QWidget;

namespace tarnwick {

class PDFDocument;
class PDFView;

/// Prints a document's pages.
namespace PagePrinter {

/// Runs the print dialog as a sheet of a window and prints what the user chooses, with the settings
/// of PrintSettings. Progress shows with a way to cancel while the program stays usable.
///
/// Text stays text and lines stay lines, on paper and in a PDF file, which appears whole or not at
/// all (PagePrinting).
/// @param document open, borrowed; printing ends when it is destroyed.
/// @param title of the job.
/// @param window borrowed likewise.
void printAsSheet(PDFDocument* document, const QString& title, QWidget* window);

/// Makes a page view print its document so, under its window's title.
void serve(PDFView* view);

}

} // namespace tarnwick
