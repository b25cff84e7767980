#include "VersionsCommand.h"

#include "CommandOutput.h"
#include "VersionsJson.h"
#include "versions/VersionCuts.h"
#include "versions/VersionNaming.h"
#include "versions/VersionWriter.h"

#include <cstdio>
#include <string>

namespace tarnwick {

namespace {

std::string linesOf(const std::vector<std::size_t>& cuts)
{
    std::string text;
    std::size_t number = 0;
    std::size_t last = 0;
    for (const std::size_t cut : cuts) {
        text += std::to_string(++number) + '\t' + std::to_string(cut) + '\t'
            + std::to_string(cut - last) + '\n';
        last = cut;
    }
    return text;
}

/// The names of the versions' files, and of the folder that is proposed for them.
FileNameParts partsOf(const Arguments& arguments)
{
    return fileNameParts(arguments.file == "-" ? "stdin" : arguments.file);
}

/// A line as sha256sum writes and checks it: a name with line ends or backslashes has them spelled,
/// and a backslash before the line says so.
std::string hashLine(const Sha256::Digest& digest, const std::string& name)
{
    std::string spelled;
    for (const char one : name) {
        if (one == '\\')
            spelled += "\\\\";
        else if (one == '\n')
            spelled += "\\n";
        else if (one == '\r')
            spelled += "\\r";
        else
            spelled += one;
    }
    return (spelled == name ? "" : "\\") + hexadecimal(digest) + "  " + spelled + '\n';
}

std::string hashesOf(
    const Arguments& arguments, std::string_view bytes, const std::vector<std::size_t>& cuts)
{
    const FileNameParts parts = partsOf(arguments);
    std::string text;
    std::size_t number = 0;
    for (const Sha256::Digest& digest : digestsOf(bytes, cuts))
        text += hashLine(digest, versionFileName(parts.base, ++number, versionExtension(parts)));
    return text;
}

/// @returns the status given, or isFailed.
ExitStatus exportVersions(const Arguments& arguments, std::string_view bytes,
    const std::vector<std::size_t>& cuts, ExitStatus status)
{
    if (!arguments.exportFolder)
        return status;
    const FileNameParts parts = partsOf(arguments);
    const VersionWriter writer(bytes, parts.base, versionExtension(parts));
    const VersionResult result = writer.write(*arguments.exportFolder, VersionWriter::all(cuts));
    return result.outcome == VersionResult::Outcome::isDone
        ? status
        : complain(ExitStatus::isFailed, result.path, result.reason);
}

ExitStatus print(const std::string& text)
{
    const bool isPrinted = std::fwrite(text.data(), 1, text.size(), stdout) == text.size()
        && std::fflush(stdout) == 0;
    return isPrinted ? ExitStatus::isDone : complainOfOutput();
}

} // namespace

ExitStatus versionsCommand(const Arguments& arguments, const SharedBytes& bytes)
{
    const std::vector<std::size_t> cuts = versionCuts(bytes.view);
    const ExitStatus status
        = print(arguments.hashes ? hashesOf(arguments, bytes.view, cuts) : linesOf(cuts));
    return status == ExitStatus::isDone ? exportVersions(arguments, bytes.view, cuts, status)
                                        : status;
}

ExitStatus printSaves(const Arguments& arguments, std::string_view bytes, const VersionChain& chain,
    ExitStatus status)
{
    const std::size_t left = chain.markerCount() - chain.versions().size();
    if (left > 0)
        status = complain(ExitStatus::isIncomplete, arguments.file,
            std::to_string(left) + " versions behind the first "
                + std::to_string(VersionChain::mostVersions) + " are not looked into");
    if (print(versionsJson(bytes, chain)) != ExitStatus::isDone)
        return ExitStatus::isFailed;
    return exportVersions(arguments, bytes, versionCuts(bytes), status);
}

ExitStatus printPlaces(const Arguments& arguments, const SharedBytes& bytes)
{
    return printSaves(arguments, bytes.view, VersionChain(bytes.view),
        complain(ExitStatus::isIncomplete, arguments.file, "what each save changed is not known"));
}

} // namespace tarnwick
