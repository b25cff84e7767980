#include "export/ExportTarget.h"

#include "files/ErrorText.h"

namespace tarnwick {

ExportOutcome writeExport(const ExportContent& content, OutputFile& file,
    const std::stop_token& stop, const ExportContent::Progress& progress)
{
    int error = file.open();
    const auto sink = [&](std::string_view bytes) {
        error = file.append(bytes);
        return error == 0;
    };
    if (error == 0 && content.write(sink, stop, progress))
        error = file.commit();
    else if (error == 0)
        return {}; // asked to stop
    return {error == 0, error == 0 ? QString() : QString::fromStdString(errorText(error))};
}

} // namespace tarnwick
