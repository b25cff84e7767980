#include "export/ExportTarget.h"

namespace tarnwick {

ExportOutcome writeExport(
    const ExportContent& content, OutputFile& file, const ExportContent::Progress& progress)
{
    int error = file.open();
    const auto sink = [&](std::string_view bytes) {
        error = file.append(bytes);
        return error == 0;
    };
    if (error == 0 && content.write(sink, progress))
        error = file.commit();
    else if (error == 0)
        return {}; // progress said no
    return {error == 0, error == 0 ? QString() : QString::fromStdString(outputErrorText(error))};
}

} // namespace tarnwick
