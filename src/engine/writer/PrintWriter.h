#pragma once

#include "PageForms.h"
#include "protocol/FileMessages.h"

#include <array>
#include <map>
#include <vector>

namespace tarnwick {

/// Writes sheets of paper as a PDF file: a page for each, which clips to its part and paints the
/// document's page as a form (ISO 32000-1, 8.10). Text stays text and lines stay lines, under the
/// names and fonts of the document.
///
/// Annotations and form fields are painted as they look, those that are meant for paper; what a
/// page does beside looking (outline, fields, links, names) stays behind. Sheets of one page share
/// its form. A page that cannot be read leaves its sheets empty.
class PrintWriter : public PageForms
{
public:
    /// @param order borrowed. @param descriptor borrowed, written from its position on.
    PrintWriter(const EngineDocument& document, const PrintRequest& order, int descriptor,
        Progress progress);

    /// @returns FZ_ERROR_NONE, FZ_ERROR_MEMORY when memory or room for the file ran out.
    int write();

private:
    using SheetKey = std::array<double, 6>; ///< the numbers of a sheet, to find it again

    void writeSheet(const EngineSheet& sheet, int number, int parent);
    void writePages(int number, const std::vector<int>& kids);
    void writeCatalog(int number, int pages);
    void writeReached();
    int contentsOf(const EngineSheet& sheet, const Form& form);

    const PrintRequest& theOrder;
    Progress theProgress;
    std::map<SheetKey, int> theContents; ///< numbers of the sheets' contents, for further copies
};

} // namespace tarnwick
