#include "files/HelperProgram.h"

#include <system_error>

namespace tarnwick {

std::filesystem::path helperProgram(std::string_view name)
{
    std::error_code error;
    const std::filesystem::path folder
        = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    const std::filesystem::path beside = folder / name;
    if (std::filesystem::is_regular_file(beside, error))
        return beside;
    // An absolute one replaces the folder.
    const std::filesystem::path installed = (folder / TARNWICK_HELPER_FOLDER).lexically_normal();
    // What is itself a helper has the others beside it.
    return std::filesystem::is_directory(installed, error) ? installed / name : beside;
}

} // namespace tarnwick
