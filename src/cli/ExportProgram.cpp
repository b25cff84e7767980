#include "ExportProgram.h"

#include "Complaint.h"
#include "files/ErrorText.h"
#include "files/HelperProgram.h"

#include <cerrno>

#include <unistd.h>

namespace tarnwick {

ExitStatus becomeExportProgram(char** words)
{
    const std::filesystem::path program = helperProgram("tarnwick-export");
    ::execv(program.c_str(), words);
    return complain(ExitStatus::isFailed, program, errorText(errno));
}

} // namespace tarnwick
