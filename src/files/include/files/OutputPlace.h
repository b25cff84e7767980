#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

namespace tarnwick {

/// The place that a path leads to, its last links followed, for a file that is put there: a folder
/// and a name in it that is no link.
class OutputPlace
{
public:
    OutputPlace() = default;
    ~OutputPlace();
    OutputPlace(const OutputPlace&) = delete;
    OutputPlace& operator=(const OutputPlace&) = delete;

    /// @param base descriptor that a relative path starts from, or AT_FDCWD.
    /// @returns 0, an errno, or OutputFile::isDanglingLink.
    int find(int base, const std::string& path);

    /// Descriptor of the folder, for names in it alone (O_PATH); owned by this object.
    int folder() const { return theFolder; }
    const std::string& name() const { return theName; }
    /// What stands there, or nothing.
    const std::optional<struct stat>& standing() const { return theStanding; }
    /// The path leads to something that is open already, by a link of /proc: through it is written
    /// as it was opened, and nothing is put in its place.
    bool isOfProcess() const { return isLinkOfProcess; }
    /// Of these, number of the descriptor of this very process.
    std::optional<int> descriptor() const { return theDescriptor; }

private:
    int step(int base, const std::string& path);
    int followLink(std::string& path);
    bool findDescriptor();

    int theFolder = -1;
    std::string theName;
    std::optional<struct stat> theStanding;
    bool isLinkOfProcess = false;
    std::optional<int> theDescriptor;
};

} // namespace tarnwick
