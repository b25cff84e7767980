#include "export/BytesExport.h"

#include "ExportPanel.h"
#include "files/ErrorText.h"
#include "files/WholeFile.h"
#include "frame/Notice.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr std::size_t portion = std::size_t{4} << 20; ///< bytes between two looks at the stop token

} // namespace

void BytesExport::begin(SavedBytes bytes)
{
    (new BytesExport(std::move(bytes)))->openPanel();
}

BytesExport::BytesExport(SavedBytes bytes)
    : ExportJob(bytes.title)
    , theSaved(std::move(bytes))
{
}

BytesExport::~BytesExport()
{
    stopWriting();
}

void BytesExport::openPanel()
{
    QStringList types{QFileInfo(theSaved.name).suffix(), u"bin"_s, u"txt"_s, u"dat"_s};
    types.removeDuplicates();
    auto* const panel = new ExportPanel(title(), types, tr("Bytes"), theSaved.window);
    panel->propose(theSaved.folder, theSaved.name);
    connect(panel, &QDialog::accepted, this, [this, panel] { write(panel->chosenPath()); });
    connect(panel, &QDialog::rejected, this, &BytesExport::end);
    connect(panel, &QObject::destroyed, this, [this] {
        if (thePath.isEmpty()) // its window has closed
            end();
    });
    panel->show();
}

void BytesExport::write(const QString& path)
{
    if (path.isEmpty())
        return end();
    thePath = path;
    showProgress(QFileInfo(path).fileName());
    startWriting([this](const std::stop_token& stop, const Work::Report& report) {
        WholeFile file(QFile::encodeName(thePath).toStdString());
        const std::string_view bytes = theSaved.bytes;
        int error = file.open();
        for (std::size_t done = 0; error == 0 && done < bytes.size(); done += portion) {
            if (stop.stop_requested())
                return;
            error = file.append(bytes.substr(done, portion));
            report(done, bytes.size());
        }
        if (error == 0)
            error = file.commit();
        isWritten = error == 0;
        if (error != 0)
            theFailure = QString::fromStdString(errorText(error));
    });
}

void BytesExport::finishWriting()
{
    const QString folder = QDir::toNativeSeparators(QFileInfo(thePath).absolutePath());
    if (isWritten) {
        QString text = tr("%1 has been written to “%2”.").arg(shownName(thePath), folder);
        const bool isWhole = theSaved.missing.isEmpty();
        if (!isWhole)
            text.prepend(theSaved.missing + u' ');
        tellUser({isWhole ? Notice::Kind::isDone : Notice::Kind::isIncomplete, text},
            theSaved.window, nullptr);
    } else if (!theFailure.isEmpty()) {
        tellUser(
            {Notice::Kind::isFailure,
                tr("%1 has not been written: %2").arg(shownName(thePath), asSentence(theFailure))},
            theSaved.window, nullptr);
    }
    end();
}

} // namespace tarnwick
