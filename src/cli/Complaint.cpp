#include "Complaint.h"

#include "files/ErrorText.h"

#include <cerrno>
#include <cstdio>

namespace tarnwick {

ExitStatus complain(ExitStatus status, const std::string& what, const std::string& reason)
{
    std::fprintf(stderr, "tarnwick-inspect: %s: %s\n", what.c_str(), reason.c_str());
    return status;
}

ExitStatus complainOfOutput()
{
    return complain(ExitStatus::isFailed, "standard output", errorText(errno));
}

} // namespace tarnwick
