#include "CommandOutput.h"

#include "PiecePrinter.h"
#include "analysis/NameSearch.h"
#include "analysis/ObjectKind.h"

#include <cstdio>

#include <unistd.h>

namespace tarnwick {

namespace {

bool printVisible(std::string_view bytes)
{
    std::u16string text;
    for (const char byte : bytes)
        text += static_cast<unsigned char>(byte);
    PiecePrinter printer(stdout, PieceFormat::isColoured);
    printer.print(ColourRole::isDefault, text);
    return printer.finish();
}

} // namespace

ExitStatus printBytes(std::string_view bytes, ExitStatus status)
{
    const bool isPrinted = ::isatty(STDOUT_FILENO) != 0
        ? printVisible(bytes)
        : std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size()
            && std::fflush(stdout) == 0;
    return isPrinted ? status : complainOfOutput();
}

std::string shownPath(const std::string& path)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string shown;
    for (const char character : path) {
        const auto code = static_cast<unsigned char>(character);
        if (code > 0x20 && code < 0x7F)
            shown += character;
        else
            shown.append({'#', digits[code >> 4], digits[code & 0xF]});
    }
    return shown;
}

std::string shownNumbers(const pdfObject& object)
{
    return std::to_string(object.objNo()) + ' ' + std::to_string(object.objGen()) + ' '
        + std::to_string(object.objVer());
}

void appendObject(const pdfObjectCatalog& catalog, const pdfObject& object, JsonText& json)
{
    appendObject(object, objectKind(catalog, object), json);
}

void appendObject(const pdfObject& object, std::string_view kind, JsonText& json)
{
    if (object.objType() == ObjectType::isTrailer)
        json.key("number").null().key("generation").null();
    else
        json.key("number").number(object.objNo()).key("generation").number(object.objGen());
    json.key("version").number(object.objVer());
    json.key("kind").string(kind);
}

ExitStatus reportHidden(const pdfObjectCatalog& catalog, const Arguments& arguments, JsonText* json)
{
    const HiddenObjects hidden = hiddenObjects(catalog);
    if (json) {
        json->key("notSeen").open('{').key("objectStreams").number(hidden.streams);
        json->key("objects").number(hidden.objects).close('}');
    }
    if (hidden.streams == 0)
        return ExitStatus::isDone;
    return complain(ExitStatus::isIncomplete, arguments.file,
        std::to_string(hidden.objects) + " objects lie in " + std::to_string(hidden.streams)
            + " object streams, which are not looked into");
}

} // namespace tarnwick
