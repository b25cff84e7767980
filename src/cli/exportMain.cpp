// tarnwick-export: what tarnwick-inspect becomes for flat, text, rtf, check, compare, object
// --decoded and versions --json; takes the same words.

#include "Arguments.h"
#include "CompareCommand.h"
#include "DecodedCommand.h"
#include "DocumentCheckCommand.h"
#include "ExportCommand.h"
#include "SavesCommand.h"
#include "files/LargePages.h"

#include <csignal>
#include <cstdio>
#include <string>

using namespace tarnwick;

int main(int count, char** words)
{
    std::signal(SIGXFSZ, SIG_IGN); // a limit on file sizes is an error, not the end
    std::string problem = "use tarnwick-inspect";
    const auto arguments = parseArguments({words + (count > 0 ? 1 : 0), words + count}, problem);
    const bool isOfSaves = arguments && arguments->command == "versions" && arguments->json;
    const bool isCheck = arguments && arguments->command == "check";
    const bool isComparison = arguments && arguments->command == "compare";
    if (!arguments
        || (!arguments->output && !arguments->decoded && !isOfSaves && !isCheck && !isComparison)) {
        std::fprintf(stderr, "tarnwick-export: %s\n", problem.c_str());
        return static_cast<int>(ExitStatus::isWrongUse);
    }
    if (isComparison)
        return static_cast<int>(compareCommand(*arguments));
    if (isOfSaves)
        return static_cast<int>(savesCommand(*arguments));
    if (isCheck) {
        useLargePages(); // for the scan
        return static_cast<int>(documentCheckCommand(*arguments));
    }
    return static_cast<int>(
        arguments->decoded ? decodedCommand(*arguments) : exportCommand(*arguments));
}
