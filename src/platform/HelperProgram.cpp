#include "platform/HelperProgram.h"

#include <system_error>

std::filesystem::path helperProgram(std::string_view name)
{
    std::error_code error;
    const std::filesystem::path folder
        = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    const std::filesystem::path beside = folder / name;
    if (std::filesystem::is_regular_file(beside, error))
        return beside;
    // An absolute one replaces the folder.
    return (folder / TARNWICK_HELPER_FOLDER / name).lexically_normal();
}
