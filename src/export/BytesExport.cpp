#include "export/BytesExport.h"

#include "files/WholeFile.h"

#include <QFileInfo>

#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr std::size_t portion = std::size_t{4} << 20; ///< bytes between two looks at the stop token

} // namespace

void BytesExport::begin(SavedBytes bytes)
{
    auto* const job = new BytesExport(std::move(bytes));
    const SavedBytes& saved = job->theSaved;
    QStringList types{QFileInfo(saved.name).suffix(), u"bin"_s, u"txt"_s, u"dat"_s};
    types.removeDuplicates();
    job->openPanel(types, tr("Bytes"), saved.folder, saved.name);
}

BytesExport::BytesExport(SavedBytes bytes)
    : FileExport(bytes.title, bytes.window)
    , theSaved(std::move(bytes))
{
}

BytesExport::~BytesExport()
{
    stopWriting();
}

std::optional<int> BytesExport::append(
    WholeFile& file, const std::stop_token& stop, const Work::Report& report)
{
    const std::string_view bytes = theSaved.bytes;
    int error = 0;
    for (std::size_t done = 0; error == 0 && done < bytes.size(); done += portion) {
        if (stop.stop_requested())
            return std::nullopt;
        error = file.append(bytes.substr(done, portion));
        report(done, bytes.size());
    }
    return error;
}

} // namespace tarnwick
