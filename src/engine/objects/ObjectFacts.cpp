#include "ObjectFacts.h"

#include "Attempt.h"
#include "FontFacts.h"
#include "IccHeader.h"
#include "ImageFacts.h"
#include "ObjectEntry.h"

namespace tarnwick {

namespace {

using Fact = EngineFactKind;

constexpr int mostNamesTold = 50; ///< of each kind of resources

/// "/Font /F1 /F2", for each kind of resources a fact.
void tellResources(FactSheet& sheet, const ObjectView& resources)
{
    for (int kind = 0; kind < resources.size(); ++kind) {
        const ObjectView named = resources.at(kind);
        if (!named.isDictionary() || resources.keyAt(kind) == "ProcSet")
            continue;
        std::string text = ObjectText::name(resources.keyAt(kind)) + ':';
        for (int index = 0; index < std::min(named.size(), mostNamesTold); ++index)
            text += ' ' + ObjectText::name(named.keyAt(index));
        if (named.size() > mostNamesTold)
            text += " and more, " + std::to_string(named.size()) + " in all";
        sheet.add(Fact::isResources, text);
    }
}

/// A form XObject or a tiling pattern (ISO 32000-2, 8.10 and 8.7.3).
void tellOfForm(FactSheet& sheet, const ObjectView& form)
{
    sheet.setKind(EngineObjectKind::isForm);
    sheet.addValue(Fact::isBox, form.entry("BBox"));
    sheet.addValue(Fact::isMatrix, form.entry("Matrix"));
    tellResources(sheet, form.entry("Resources"));
    sheet.addValue(Fact::isGroup, form.entry("Group"));
}

/// The name under which the document lists an embedded file (ISO 32000-2, 7.11.4).
std::string listedName(const EngineDocument& document, int number)
{
    fz_context* const ctx = document.context();
    pdf_obj* names = nullptr;
    fz_var(names);
    const int error = attempt(ctx,
        [&] { names = pdf_load_name_tree(ctx, document.document(), PDF_NAME(EmbeddedFiles)); });
    std::string found;
    const ObjectView tree(ctx, error ? nullptr : names);
    for (int index = 0; index < tree.size() && found.empty(); ++index) {
        const ObjectView fileSpec = tree.at(index);
        const ObjectView files = fileSpec.entry("EF");
        if (files.entry("F").number() != number && files.entry("UF").number() != number)
            continue;
        found = fileSpec.entry("UF").text();
        if (found.empty())
            found = fileSpec.entry("F").text();
    }
    pdf_drop_obj(ctx, names);
    return found;
}

void tellOfEmbeddedFile(FactSheet& sheet, const ObjectView& file, int number)
{
    sheet.setKind(EngineObjectKind::isEmbeddedFile);
    sheet.add(Fact::isName, listedName(sheet.document(), number));
    sheet.add(Fact::isType, file.entry("Subtype").name());
    const ObjectView parameters = file.entry("Params");
    if (const auto size = parameters.entry("Size").integer())
        sheet.addCount(Fact::isSize, *size, "bytes as stated");
    const ObjectView changed = parameters.entry("ModDate");
    sheet.addValue(Fact::isDate, changed.isNone() ? parameters.entry("CreationDate") : changed);
}

void tellOfFileSpec(FactSheet& sheet, const ObjectView& fileSpec)
{
    sheet.setKind(EngineObjectKind::isFileSpec);
    const std::string name = fileSpec.entry("UF").text();
    sheet.add(Fact::isName, name.empty() ? fileSpec.entry("F").text() : name);
    sheet.add(Fact::isDescription, fileSpec.entry("Desc").text());
    sheet.addValue(Fact::isFile, fileSpec.entry("EF").entry("F"));
}

void tellOfObjectStream(FactSheet& sheet, const ObjectView& stream, EngineObjectKind kind)
{
    const bool isTable = kind == EngineObjectKind::isCrossReference;
    sheet.setKind(kind);
    sheet.addValue(Fact::isObjects, stream.entry(isTable ? "Size" : "N"));
    sheet.addValue(Fact::isExtended, stream.entry(isTable ? "Prev" : "Extends"));
}

bool isFontProgram(const ObjectView& stream)
{
    const std::string subtype = stream.entry("Subtype").name();
    return subtype == "Type1C" || subtype == "CIDFontType0C" || subtype == "OpenType"
        || (stream.entry("Length1").integer() && subtype.empty());
}

void tellOfStream(FactSheet& sheet, const ObjectView& stream, int number)
{
    const std::string type = stream.entry("Type").name();
    const std::string subtype = stream.entry("Subtype").name();
    if (subtype == "Image")
        tellOfImage(sheet, stream);
    else if (subtype == "Form" || (type == "Pattern" && !stream.entry("BBox").isNone()))
        tellOfForm(sheet, stream);
    else if (type == "EmbeddedFile")
        tellOfEmbeddedFile(sheet, stream, number);
    else if (type == "ObjStm")
        tellOfObjectStream(sheet, stream, EngineObjectKind::isObjectStream);
    else if (type == "XRef")
        tellOfObjectStream(sheet, stream, EngineObjectKind::isCrossReference);
    else if (type == "Metadata")
        sheet.setKind(EngineObjectKind::isMetadata);
    else if (isFontProgram(stream))
        tellOfFontProgram(sheet, number);
    else if (stream.entry("N").integer())
        tellOfProfile(sheet, stream, number);
}

} // namespace

int readFacts(const EngineDocument& document, int number, FactsResult& result)
{
    if (objectEntry(document, number).state != EngineObjectState::isPresent)
        return FZ_ERROR_NONE;
    fz_context* const ctx = document.context();
    pdf_obj* object = nullptr;
    int isStream = 0;
    fz_var(object);
    const int error = attempt(ctx, [&] {
        object = pdf_load_object(ctx, document.document(), number);
        isStream = pdf_obj_num_is_stream(ctx, document.document(), number);
    });
    const ObjectView view(ctx, error ? nullptr : object);
    FactSheet sheet(document, result);
    const std::string type = view.entry("Type").name();
    if (isStream)
        tellOfStream(sheet, view, number);
    else if (type == "Font" || type == "FontDescriptor")
        tellOfFont(sheet, view);
    else if (type == "Filespec" || view.entry("EF").isDictionary())
        tellOfFileSpec(sheet, view);
    pdf_drop_obj(ctx, object);
    return FZ_ERROR_NONE;
}

} // namespace tarnwick
