#include "versions/VersionNaming.h"

namespace tarnwick {

FileNameParts fileNameParts(std::string_view path)
{
    while (path.ends_with('/'))
        path.remove_suffix(1);
    if (const std::size_t slash = path.rfind('/'); slash != std::string_view::npos)
        path.remove_prefix(slash + 1);

    const std::size_t dot = path.rfind('.');
    const bool isExtension = dot != std::string_view::npos && dot > 0 && dot + 1 < path.size();
    if (!isExtension)
        return {std::string(path), {}};
    return {std::string(path.substr(0, dot)), std::string(path.substr(dot + 1))};
}

std::string versionExtension(const FileNameParts& parts)
{
    return parts.extension.empty() ? std::string() : "." + parts.extension;
}

std::string versionFolderName(const FileNameParts& parts)
{
    return parts.base + "-Copy" + (parts.extension.empty() ? "" : "-" + parts.extension);
}

std::string versionFileName(std::string_view base, std::size_t number, std::string_view extension)
{
    std::string digits = std::to_string(number);
    if (digits.size() < 3)
        digits.insert(0, 3 - digits.size(), '0');
    return std::string(base) + "-" + digits + std::string(extension);
}

} // namespace tarnwick
