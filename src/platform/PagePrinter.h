#pragma once

#include <QString>

class PDFDocument;
class QWidget;

/// Prints a document's pages.
namespace PagePrinter {

/// Runs the print dialog as a sheet of a window and prints what the user chooses, with the settings
/// of PrintSettings. Progress shows with a way to cancel while the program stays usable.
///
/// The whole document goes to a CUPS queue as a PDF file where no page has to be split; everything
/// else is painted, at up to 600 dots per inch (300 into a PDF file).
/// @param document open, borrowed; printing ends when it is destroyed.
/// @param title of the job.
/// @param window borrowed likewise.
void printAsSheet(PDFDocument* document, const QString& title, QWidget* window);

}
