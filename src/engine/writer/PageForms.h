#pragma once

#include "WrittenFile.h"

#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tarnwick {

/// A file into which pages of the document go as forms (ISO 32000-1, 8.10), each once: its content
/// under the names and fonts of the document, and the appearances of its annotations and form
/// fields over it, those that are meant for paper. What a page does beside looking (outline,
/// fields, links, names) stays behind.
class PageForms : public WrittenFile
{
public:
    /// The pages whose forms lack something, once the file is written. A page that does not
    /// exist is none of them.
    const Losses& losses() const { return theLosses; }

    // Parts of content streams.
    static std::string numbers(std::initializer_list<double> list);
    static std::string concatenation(const fz_matrix& matrix);

protected:
    /// A page as it is painted.
    struct Form
    {
        int number = 0; ///< 0 for a page that cannot be read
        fz_matrix toPageSpace = fz_identity; ///< from its user space
    };

    /// @param descriptor borrowed, written from its position on.
    PageForms(const EngineDocument& document, int descriptor);
    ~PageForms();

    /// @param page index from 0; one out of range has no form.
    const Form& formOf(int page);
    /// What ran out, or FZ_ERROR_NONE; nothing of worth is made from then on.
    int formError() const { return theError; }

private:
    /// An annotation's appearance.
    struct Mark
    {
        int number = 0;
        fz_matrix toUserSpace = fz_identity; ///< of the page, from that of the appearance
    };
    using Parts = std::vector<WrittenObjects::Resolved>; ///< of a page's content
    using ContentKey = std::pair<std::string, std::vector<int>>; ///< entries, numbers of streams
    struct Content
    {
        int number = 0;
        EngineLoss loss = EngineLoss::isNone; ///< of every page that shares it
    };

    /// Of the page that is being made into a form.
    void noteLoss(EngineLoss loss);
    /// An error other than of memory leaves the rest of the page.
    void noteError(int error);

    Form makeForm(int page);
    int writeForm(const std::string& entries, const WrittenStream& stream);
    int writeContentForm(pdf_obj* page, const std::string& box);
    int writeMarkedForm(int content, const std::vector<Mark>& marks, const std::string& box);
    Parts contentParts(pdf_obj* page);
    WrittenStream contentOf(const Parts& parts);
    std::string resourcesEntry(pdf_obj* page);
    int innerResources(pdf_obj* resources);
    std::string groupEntry(pdf_obj* page);

    bool mayHaveMarks(pdf_obj* page) const;
    std::vector<Mark> marksOf(int page);
    Mark markOf(pdf_annot* annotation);
    int appearanceForm(pdf_obj* appearance);

    int theError = FZ_ERROR_NONE;
    EngineLoss theLoss = EngineLoss::isNone; ///< of the page that is being made into a form
    Losses theLosses;
    std::unordered_map<int, Form> theForms; ///< by page
    std::unordered_map<pdf_obj*, int> theInnerResources; ///< numbers of what stands inside pages
    std::unordered_map<std::string, int> theResources; ///< likewise by what they say
    std::map<ContentKey, Content> theContentForms; ///< for pages that look the same
    std::size_t theFormBytes = 0; ///< of the forms that have been written
};

} // namespace tarnwick
