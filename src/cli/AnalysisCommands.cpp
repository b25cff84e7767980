#include "AnalysisCommands.h"

#include "Complaint.h"
#include "PiecePrinter.h"
#include "analysis/SourceText.h"

#include <cstdio>
#include <cstring>
#include <string>

#include <unistd.h>

namespace tarnwick {

namespace {

PieceFormat outputFormat(const Arguments& arguments)
{
    if (arguments.json)
        return PieceFormat::isJson;
    return ::isatty(STDOUT_FILENO) ? PieceFormat::isColoured : PieceFormat::isPlain;
}

ExitStatus finish(PiecePrinter& printer)
{
    return printer.finish() ? ExitStatus::isDone : complainOfOutput();
}

void printObjectList(const SourceText& source, PiecePrinter& printer)
{
    source.makeObjectList().forEachPiece(
        [&printer](ColourRole role, std::u16string_view text) { printer.print(role, text); });
}

} // namespace

ExitStatus listingCommand(const Arguments& arguments, const SharedBytes& bytes)
{
    PiecePrinter printer(stdout, outputFormat(arguments));
    SourceText source(bytes);
    std::u16string text;
    source.scan([&](std::span<const Piece> pieces) {
        for (const Piece piece : pieces) {
            text.clear();
            appendPiece(bytes.view, piece, text);
            printer.print(piece.role(), text);
        }
    });
    printObjectList(source, printer);
    return finish(printer);
}

ExitStatus objectsCommand(const Arguments& arguments, const SharedBytes& bytes)
{
    PiecePrinter printer(stdout, outputFormat(arguments));
    SourceText source(bytes);
    source.scan({});
    printObjectList(source, printer);
    return finish(printer);
}

ExitStatus summaryCommand(const Arguments&, const SharedBytes& bytes)
{
    SourceText source(bytes);
    source.scan({});
    PiecePrinter printer(stdout, PieceFormat::isPlain);
    const std::string summary = source.theCatalog().makeSummary() + '\n';
    printer.print(ColourRole::isDefault, std::u16string(summary.begin(), summary.end()));
    return finish(printer);
}

} // namespace tarnwick
