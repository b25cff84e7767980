#include "AnalysisCommands.h"
#include "Arguments.h"
#include "CheckCommand.h"
#include "Complaint.h"
#include "ExportProgram.h"
#include "FileInput.h"
#include "ObjectCommand.h"
#include "TreeCommand.h"
#include "UsesCommand.h"
#include "VersionsCommand.h"
#include "files/ErrorText.h"
#include "files/LargePages.h"
#include "files/OpenedFiles.h"
#include "files/OutputFile.h"

#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

#include <unistd.h>

using namespace tarnwick;

namespace {

constexpr const char* usage = R"(Usage: tarnwick-inspect COMMAND FILE [OPTION]...
Looks into the source of a PDF file. "-" as FILE reads standard input.

Commands:
  listing  FILE [--json]    the coloured listing, followed by the object list
  objects  FILE [--json]    the object list alone
  summary  FILE             how many objects of each kind there are
  versions FILE [--json | --hashes] [--export FOLDER]
                            where the saved versions end; --json: what each save
                            has changed; --hashes: the SHA-256 of each, for
                            sha256sum -c; --export: writes each to a file
  object   FILE N [G] [--at-version V] [--raw | --decoded | --json]
                            object number N as it is stored; --raw: the stored
                            bytes of its stream; --decoded: what they unpack to,
                            by the PDF engine, of the object that readers use
  uses     FILE N [--json]  who refers to object N
  tree     FILE [--json]    the objects, followed from the trailer
  check    FILE [--json]    departures from the standard, what acts or hides,
                            and what the PDF engine repaired or cannot read
  compare  A [B] [--from V] [--to V] [--objects] [--json]
                            what differs between two files, or between two saved
                            versions of one, the last two unless told: objects
                            added, freed, replaced, moved, grouped by meaning
  flat     FILE -o OUT      the document written out again by the PDF engine
  text     FILE -o OUT      its text, in UTF-8
  rtf      FILE -o OUT      its text with fonts and colours, as RTF
Options:
  -o, --output OUT
                 file to write; "-" for standard output
  --password-file FILE
                 first line is the document's password; else it is asked for
  --at-version V the object as it was in saved version V
  --from V, --to V
                 saved versions to compare, as "versions" counts them; of two
                 files the first one's and the second one's
  --json         one JSON object a line for every piece (listing, objects), one
                 in all for the others (flat, text, rtf: on standard error, what
                 is missing); docs/JSON.md describes them
  --help         this text
  --version      the program's version

Exit status:
  0  done
  1  the file cannot be read or the export failed
  2  wrong use
  3  what was compared differs (0: it does not)
  4  done, but something is missing from what was written: pages of a document,
     or objects within object streams; standard error says what, and why
)";

ExitStatus fail(ExitStatus status, const std::string& message)
{
    std::fprintf(stderr, "tarnwick-inspect: %s\n", message.c_str());
    return status;
}

ExitStatus run(const Arguments& arguments)
{
    std::string reason;
    const std::optional<SharedBytes> bytes = readInput(arguments.file, reason);
    if (!bytes)
        return complain(ExitStatus::isFailed, arguments.file, reason);
    if (OpenedFiles::contains(STDOUT_FILENO))
        return complain(
            ExitStatus::isFailed, "standard output", errorText(OutputFile::isOpenedFile));
    if (arguments.command == "listing")
        return listingCommand(arguments, *bytes);
    if (arguments.command == "objects")
        return objectsCommand(arguments, *bytes);
    if (arguments.command == "summary")
        return summaryCommand(arguments, *bytes);
    if (arguments.command == "object")
        return objectCommand(arguments, *bytes);
    if (arguments.command == "uses")
        return usesCommand(arguments, *bytes);
    if (arguments.command == "tree")
        return treeCommand(arguments, *bytes);
    if (arguments.command == "check")
        return checkCommand(arguments, *bytes);
    if (arguments.command == "versions")
        return arguments.json ? printPlaces(arguments, *bytes) : versionsCommand(arguments, *bytes);
    return fail(ExitStatus::isWrongUse, "unknown command " + arguments.command);
}

} // namespace

int main(int count, char** words)
{
    std::signal(SIGXFSZ, SIG_IGN); // a limit on file sizes is an error, not the end
    useLargePages();
    std::string problem;
    const auto arguments = parseArguments({words + (count > 0 ? 1 : 0), words + count}, problem);
    if (!arguments) {
        std::fprintf(
            stderr, "tarnwick-inspect: %s\nTry: tarnwick-inspect --help\n", problem.c_str());
        return static_cast<int>(ExitStatus::isWrongUse);
    }
    if (arguments->wantsHelp) {
        std::fputs(usage, stdout);
        return 0;
    }
    if (arguments->wantsVersion) {
        std::puts("tarnwick-inspect " TARNWICK_VERSION);
        return 0;
    }
    const bool needsEngine
        = arguments->output || arguments->decoded || arguments->command == "compare";
    if (arguments->command == "check")
        static_cast<void>(becomeExportProgram(words)); // without it there is the source
    if (arguments->decoded && ::isatty(STDOUT_FILENO) != 0)
        return static_cast<int>(fail(ExitStatus::isWrongUse,
            "--decoded prints bytes that a terminal may obey; send them to a file or a pipe"));
    if (needsEngine)
        return static_cast<int>(becomeExportProgram(words));
    if (arguments->command == "versions" && arguments->json)
        becomeExportProgram(words); // without it the places alone are told
    return static_cast<int>(run(*arguments));
}
