#include "cli/ExportProgram.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace {

/// Beside this program in a build, in the folder for programs that users do not call once
/// installed.
std::filesystem::path exportProgram()
{
    std::error_code error;
    const std::filesystem::path folder
        = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    const std::filesystem::path beside = folder / "tarnwick-export";
    if (std::filesystem::exists(beside, error))
        return beside;
    return folder / "../libexec/tarnwick/tarnwick-export";
}

} // namespace

ExitStatus becomeExportProgram(char** words)
{
    const std::filesystem::path program = exportProgram();
    ::execv(program.c_str(), words);
    std::fprintf(stderr, "tarnwick-inspect: %s: %s\n", program.c_str(), std::strerror(errno));
    return ExitStatus::isFailed;
}
