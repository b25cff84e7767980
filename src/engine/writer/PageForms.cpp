#include "PageForms.h"

#include "Attempt.h"
#include "PageGeometry.h"
#include "UnreadObjects.h"

namespace tarnwick {

namespace {

/// Bytes of one page's content that are put together: packing them takes seconds already, and an
/// array can name one stream any number of times.
constexpr std::size_t maximumContent = 64u << 20;
/// Bytes of forms, and for each byte of the file. Pages that share their content but little else
/// could fill the memory with copies of it; they are better painted.
constexpr std::size_t maximumForms = 256u << 20;
constexpr std::size_t formsOfFile = 4;

/// What a page shows, in its own user space.
std::string shownBox(const PageGeometry& geometry)
{
    const fz_rect box = fz_transform_rect(fz_make_rect(0, 0, geometry.width, geometry.height),
        fz_invert_matrix(geometry.toPageSpace));
    return "/BBox [ " + PageForms::numbers({box.x0, box.y0, box.x1, box.y1}) + "] ";
}

} // namespace

std::string PageForms::numbers(std::initializer_list<double> list)
{
    std::string text;
    for (const double number : list)
        text += realText(static_cast<float>(number)) + " ";
    return text;
}

std::string PageForms::concatenation(const fz_matrix& matrix)
{
    return numbers({matrix.a, matrix.b, matrix.c, matrix.d, matrix.e, matrix.f}) + "cm ";
}

PageForms::PageForms(const EngineDocument& document, int descriptor)
    : WrittenFile(document, WrittenStructure::isPlain, descriptor)
{
    // The library makes the appearances that annotations lack, in a table of objects that is left
    // out of sight unless asked for.
    ++theDocument.document()->local_xref_nesting;
}

PageForms::~PageForms()
{
    --theDocument.document()->local_xref_nesting;
}

void PageForms::noteError(int error)
{
    if (error == FZ_ERROR_MEMORY)
        theError = error;
    else if (error)
        noteLoss(EngineLoss::isDamagedInPart);
}

void PageForms::noteLoss(EngineLoss loss)
{
    if (theLoss != EngineLoss::isDamaged && loss != EngineLoss::isNone)
        theLoss = loss;
}

const PageForms::Form& PageForms::formOf(int page)
{
    const auto [place, isNew] = theForms.try_emplace(page);
    if (!isNew)
        return place->second;
    theLoss = EngineLoss::isNone;
    place->second = makeForm(page);
    if (theLoss != EngineLoss::isNone)
        theLosses.emplace(page, theLoss);
    return place->second;
}

PageForms::Form PageForms::makeForm(int index)
{
    pdf_obj* page = nullptr;
    fz_var(page);
    if (index < 0 || index >= theDocument.pageCount())
        return {};
    noteError(attempt(theContext,
        [&] { page = pdf_lookup_page_obj(theContext, theDocument.document(), index); }));
    if (!pdf_is_dict(theContext, page)) {
        noteLoss(EngineLoss::isDamaged);
        return {};
    }
    noteLoss(contentLoss(theDocument, page));
    const PageGeometry geometry = pageGeometry(theContext, page);
    const std::string box = shownBox(geometry);
    const std::vector<Mark> marks = mayHaveMarks(page) ? marksOf(index) : std::vector<Mark>();
    int number = writeContentForm(page, box);
    if (!marks.empty())
        number = writeMarkedForm(number, marks, box);
    return {number, geometry.toPageSpace};
}

int PageForms::writeForm(const std::string& entries, const WrittenStream& stream)
{
    const int number = theObjects.reserve();
    const ValueSpelling spelling(ObjectType::isPlain, false);
    writeObject(number,
        "<< /Type /XObject /Subtype /Form " + entries + streamEntries(stream, spelling) + ">>",
        &stream);
    theFormBytes += stream.data.size();
    if (theFormBytes > maximumForms + formsOfFile * theDocument.fileSize())
        theError = FZ_ERROR_MEMORY;
    return number;
}

int PageForms::writeContentForm(pdf_obj* page, const std::string& box)
{
    const std::string entries = box + groupEntry(page) + resourcesEntry(page);
    const Parts parts = contentParts(page);
    std::vector<int> sources;
    for (const WrittenObjects::Resolved& part : parts)
        sources.push_back(part.source);
    const auto [place, isNew] = theContentForms.try_emplace({entries, std::move(sources)});
    Content& content = place->second;
    if (isNew) {
        const EngineLoss before = std::exchange(theLoss, EngineLoss::isNone);
        content.number = writeForm(entries, contentOf(parts));
        content.loss = std::exchange(theLoss, before);
    }
    noteLoss(content.loss);
    return content.number;
}

/// The page's own content, and the appearances over it, which its group does not take in.
int PageForms::writeMarkedForm(int content, const std::vector<Mark>& marks, const std::string& box)
{
    std::string names = "/C " + reference(content) + " ";
    std::string data = "/C Do";
    for (std::size_t index = 0; index < marks.size(); ++index) {
        const std::string name = "/A" + std::to_string(index) + " ";
        names += name + reference(marks[index].number) + " ";
        data += "\nq " + concatenation(marks[index].toUserSpace) + name + "Do Q";
    }
    return writeForm(
        box + "/Resources << /XObject << " + names + ">> >> ", makeStream(std::move(data)));
}

/// The streams that a page's Contents name, as far as they are there.
PageForms::Parts PageForms::contentParts(pdf_obj* page)
{
    pdf_obj* contents = nullptr;
    noteError(attempt(
        theContext, [&] { contents = pdf_dict_get(theContext, page, PDF_NAME(Contents)); }));
    const WrittenObjects::Resolved target = theObjects.resolve(contents);
    Parts parts;
    const auto take = [&](const WrittenObjects::Resolved& part) {
        if (part.object && part.source > 0)
            parts.push_back(part);
    };
    if (!pdf_is_array(theContext, target.object))
        take(target);
    const int count = pdf_array_len(theContext, target.object);
    for (int index = 0; index < count; ++index)
        take(theObjects.resolve(pdf_array_get(theContext, target.object, index)));
    return parts;
}

/// One stream goes over as it is stored; several make one, with a break between them, since none
/// of them needs to end with a whole token's end.
WrittenStream PageForms::contentOf(const Parts& parts)
{
    if (parts.size() == 1) {
        const auto& [object, number] = parts.front();
        std::optional<WrittenStream> stream = loadStream(theDocument, object, number);
        noteError(stream ? stream->error : FZ_ERROR_NONE);
        if (stream && stream->isLost)
            noteLoss(EngineLoss::isDamaged);
        return std::move(stream).value_or(WrittenStream());
    }
    std::string data;
    for (const WrittenObjects::Resolved& part : parts) {
        if (data.size() > maximumContent) {
            noteLoss(EngineLoss::isCut);
            break;
        }
        noteError(appendDecoded(theDocument, part.source, maximumContent, data));
        data += '\n';
    }
    return makeStream(std::move(data));
}

std::string PageForms::resourcesEntry(pdf_obj* page)
{
    pdf_obj* resources = nullptr;
    noteError(attempt(theContext,
        [&] { resources = pdf_dict_get_inheritable(theContext, page, PDF_NAME(Resources)); }));
    int number = 0;
    if (pdf_is_indirect(theContext, resources))
        number = theObjects.numberOf(resources);
    else if (resources)
        number = innerResources(resources);
    return "/Resources " + (number > 0 ? reference(number) : std::string("<< >>")) + " ";
}

/// Merged files have the same resources in many pages, and those of a tree are inherited by many.
int PageForms::innerResources(pdf_obj* resources)
{
    int& number = theInnerResources[resources];
    if (number > 0)
        return number;
    const std::string text = value(resources, ValueSpelling(ObjectType::isPlain, false), 0);
    int& equal = theResources[text];
    if (equal == 0) {
        equal = theObjects.reserve();
        writeObject(equal, text);
    }
    number = equal;
    return number;
}

/// A page's group is isolated whatever it says (ISO 32000-1, 11.4.7), a form's is not.
std::string PageForms::groupEntry(pdf_obj* page)
{
    pdf_obj* value = nullptr;
    noteError(
        attempt(theContext, [&] { value = pdf_dict_get(theContext, page, PDF_NAME(Group)); }));
    pdf_obj* const group = theObjects.resolve(value).object;
    if (!pdf_is_dict(theContext, group) || nameIn(group, "S") != "Transparency")
        return {};
    const ValueSpelling spelling(ObjectType::isPlain, false);
    return "/Group << " + entriesBut({"I"}, sortedEntries(group), spelling, 1) + "/I true >> ";
}

// --- Annotations ---------------------------------------------------------------------------------

/// Links are on most pages of a book, and loading a page for the sake of them takes its time.
bool PageForms::mayHaveMarks(pdf_obj* page) const
{
    bool isFound = false;
    const int error = attempt(theContext, [&] {
        pdf_obj* const annotations = pdf_dict_get(theContext, page, PDF_NAME(Annots));
        const int count = pdf_array_len(theContext, annotations);
        for (int index = 0; index < count && !isFound; ++index) {
            pdf_obj* const type = pdf_dict_get(
                theContext, pdf_array_get(theContext, annotations, index), PDF_NAME(Subtype));
            isFound = !pdf_name_eq(theContext, type, PDF_NAME(Link))
                && !pdf_name_eq(theContext, type, PDF_NAME(Popup));
        }
    });
    return error || isFound;
}

/// In the order in which they cover each other: form fields lie over everything else.
std::vector<PageForms::Mark> PageForms::marksOf(int index)
{
    std::vector<Mark> marks;
    const LoadedPage loaded(theDocument, index);
    if (!loaded.page()) {
        noteError(loaded.error());
        return marks;
    }
    const auto take = [&](pdf_annot* annotation) {
        const Mark mark = markOf(annotation);
        if (mark.number > 0)
            marks.push_back(mark);
    };
    pdf_page* const page = loaded.page();
    for (pdf_annot* annotation = pdf_first_annot(theContext, page); annotation;
         annotation = pdf_next_annot(theContext, annotation))
        take(annotation);
    for (pdf_annot* field = pdf_first_widget(theContext, page); field;
         field = pdf_next_widget(theContext, field))
        take(field);
    return marks;
}

PageForms::Mark PageForms::markOf(pdf_annot* annotation)
{
    constexpr int hiding = PDF_ANNOT_IS_INVISIBLE | PDF_ANNOT_IS_HIDDEN;
    Mark mark;
    pdf_obj* appearance = nullptr;
    const int error = attempt(theContext, [&] {
        const int flags = pdf_annot_flags(theContext, annotation);
        pdf_obj* const layer
            = pdf_dict_get(theContext, pdf_annot_obj(theContext, annotation), PDF_NAME(OC));
        if ((flags & hiding) != 0 || (flags & PDF_ANNOT_IS_PRINT) == 0
            || pdf_is_ocg_hidden(theContext, theDocument.document(), nullptr, "Print", layer))
            return;
        appearance = pdf_annot_ap(theContext, annotation);
        if (appearance)
            mark.toUserSpace = pdf_annot_transform(theContext, annotation);
    });
    noteError(error);
    if (!error && appearance)
        mark.number = appearanceForm(appearance);
    return mark;
}

/// An appearance is a form even if it does not say so; painted by name, it has to.
int PageForms::appearanceForm(pdf_obj* appearance)
{
    const auto [object, source] = theObjects.resolve(appearance);
    if (!object || source == 0)
        return 0;
    if (nameIn(object, "Subtype") == "Form")
        return theObjects.numberOf(appearance);
    const std::optional<WrittenStream> stream = loadStream(theDocument, object, source);
    if (!stream)
        return 0;
    noteError(stream->error);
    if (stream->isLost)
        noteLoss(EngineLoss::isDamagedInPart);
    const ValueSpelling spelling(ObjectType::isPlain, false);
    const std::string entries = entriesBut(
        {"Type", "Subtype", "Length", "Filter", "DecodeParms"}, sortedEntries(object), spelling, 1);
    return writeForm(entries, *stream);
}

} // namespace tarnwick
