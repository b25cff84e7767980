#pragma once

#include "FlatFile.h"
#include "protocol/FileMessages.h"

#include <array>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tarnwick {

/// Writes sheets of paper as a PDF file: a page for each, which clips to its part and paints the
/// document's page as a form (ISO 32000-1, 8.10). Text stays text and lines stay lines, under the
/// names and fonts of the document.
///
/// Annotations and form fields are painted as they look, those that are meant for paper; what a
/// page does beside looking (outline, fields, links, names) stays behind. Sheets of one page share
/// its form. A page that cannot be read leaves its sheets empty.
class PrintWriter : public FlatFile
{
public:
    /// @param order borrowed. @param descriptor borrowed, written from its position on.
    PrintWriter(const EngineDocument& document, const PrintRequest& order, int descriptor,
        Progress progress);
    ~PrintWriter();

    /// @returns FZ_ERROR_NONE, FZ_ERROR_MEMORY when memory or room for the file ran out.
    int write();
    /// The pages of which sheets lack something, once the file is written. A page that does not
    /// exist is none of them.
    const Losses& losses() const { return theLosses; }

private:
    /// A page as sheets paint it.
    struct Form
    {
        int number = 0; ///< 0 for a page that cannot be read
        fz_matrix toPageSpace = fz_identity; ///< from its user space
    };
    /// An annotation's appearance.
    struct Mark
    {
        int number = 0;
        fz_matrix toUserSpace = fz_identity; ///< of the page, from that of the appearance
    };
    using Parts = std::vector<FlatObjects::Resolved>; ///< of a page's content
    using SheetKey = std::array<double, 6>; ///< the numbers of a sheet, to find it again
    using ContentKey = std::pair<std::string, std::vector<int>>; ///< entries, numbers of streams
    struct Content
    {
        int number = 0;
        EngineLoss loss = EngineLoss::isNone; ///< of every page that shares it
    };

    void writeSheet(const EngineSheet& sheet, int number, int parent);
    void writePages(int number, const std::vector<int>& kids);
    void writeCatalog(int number, int pages);
    void writeReached();
    /// Of the page that is being made into a form.
    void noteLoss(EngineLoss loss);
    /// An error other than of memory leaves the rest of the page.
    void noteError(int error);

    const Form& formOf(int page);
    Form makeForm(int page);
    int writeForm(const std::string& entries, const FlatStream& stream);
    int writeContentForm(pdf_obj* page, const std::string& box);
    int writeMarkedForm(int content, const std::vector<Mark>& marks, const std::string& box);
    Parts contentParts(pdf_obj* page);
    FlatStream contentOf(const Parts& parts);
    std::string resourcesEntry(pdf_obj* page);
    int innerResources(pdf_obj* resources);
    std::string groupEntry(pdf_obj* page);
    int contentsOf(const EngineSheet& sheet, const Form& form);

    bool mayHaveMarks(pdf_obj* page) const;
    std::vector<Mark> marksOf(int page);
    Mark markOf(pdf_annot* annotation);
    int appearanceForm(pdf_obj* appearance);

    const PrintRequest& theOrder;
    Progress theProgress;
    int theError = FZ_ERROR_NONE;
    EngineLoss theLoss = EngineLoss::isNone; ///< of the page that is being made into a form
    Losses theLosses;
    std::unordered_map<int, Form> theForms; ///< by page
    std::unordered_map<pdf_obj*, int> theInnerResources; ///< numbers of what stands inside pages
    std::unordered_map<std::string, int> theResources; ///< likewise by what they say
    std::map<ContentKey, Content> theContentForms; ///< for pages that look the same
    std::map<SheetKey, int> theContents; ///< numbers of the sheets' contents, for further copies
    std::size_t theFormBytes = 0; ///< of the forms that have been written
};

} // namespace tarnwick
