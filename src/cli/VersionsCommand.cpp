#include "VersionsCommand.h"

#include "files/ErrorText.h"
#include "versions/IncrementalUpdate.h"
#include "versions/VersionCuts.h"
#include "versions/VersionNaming.h"
#include "versions/VersionWriter.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include <unistd.h>

namespace tarnwick {

namespace {

ExitStatus fail(const std::string& what, const std::string& reason)
{
    std::fprintf(stderr, "tarnwick-inspect: %s: %s\n", what.c_str(), reason.c_str());
    return ExitStatus::isFailed;
}

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

std::string jsonOf(const std::vector<std::size_t>& cuts, bool isIncremental)
{
    std::string text
        = isIncremental ? R"({"incremental":true,"cuts":[)" : R"({"incremental":false,"cuts":[)";
    const char* separator = "";
    for (const std::size_t cut : cuts) {
        text += separator + std::to_string(cut);
        separator = ",";
    }
    return text + "]}\n";
}

ExitStatus exportVersions(
    const Arguments& arguments, std::string_view bytes, const std::vector<std::size_t>& cuts)
{
    const bool isInput = arguments.file == "-";
    const FileNameParts parts = fileNameParts(isInput ? "stdin" : arguments.file);
    const VersionWriter writer(bytes, parts.base, versionExtension(parts));
    const VersionResult result = writer.write(*arguments.exportFolder, cuts);
    if (result.outcome == VersionResult::Outcome::isDone)
        return ExitStatus::isDone;
    return fail(result.path, result.reason);
}

} // namespace

ExitStatus versionsCommand(const Arguments& arguments, const SharedBytes& bytes)
{
    const std::vector<std::size_t> cuts = versionCuts(bytes.view);
    const std::string text
        = arguments.json ? jsonOf(cuts, isIncrementallyUpdated(bytes.view)) : linesOf(cuts);
    const bool isPrinted = std::fwrite(text.data(), 1, text.size(), stdout) == text.size()
        && std::fflush(stdout) == 0;
    if (!isPrinted)
        return fail("standard output", errorText(errno));
    return arguments.exportFolder ? exportVersions(arguments, bytes.view, cuts)
                                  : ExitStatus::isDone;
}

} // namespace tarnwick
