#include "ExportProgram.h"

#include "files/ErrorText.h"
#include "files/HelperProgram.h"

#include <cerrno>
#include <cstdio>

#include <unistd.h>

namespace tarnwick {

ExitStatus becomeExportProgram(char** words)
{
    const std::filesystem::path program = helperProgram("tarnwick-export");
    ::execv(program.c_str(), words);
    std::fprintf(stderr, "tarnwick-inspect: %s: %s\n", program.c_str(), errorText(errno).c_str());
    return ExitStatus::isFailed;
}

} // namespace tarnwick
