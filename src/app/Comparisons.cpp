#include "Comparisons.h"

#include "AppDelegate.h"
#include "comparison/ComparisonViewController.h"
#include "document/Document.h"
#include "frame/DocumentWindow.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

void open(AppDelegate& delegate, Document* document, const ComparedFile& before,
    const ComparedFile& after)
{
    auto* const content = new ComparisonViewController;
    DocumentWindow* const window
        = delegate.makeWindow(u"ComparisonWindowController"_s, document, content);
    window->show();
    content->compare(before, after);
}

} // namespace

void compareVersions(
    AppDelegate& delegate, Document* document, const FileVersion& before, const FileVersion& after)
{
    const QString path = document->fileURL().toLocalFile();
    open(delegate, document, {nullptr, path, before}, {nullptr, path, after});
}

void compareFiles(AppDelegate& delegate, Document* document, const QStringList& paths)
{
    open(delegate, document, {nullptr, paths.at(0), {}}, {nullptr, paths.at(1), {}});
}

void compareWithFile(AppDelegate& delegate, DocumentWindow* window)
{
    auto* const document = qobject_cast<Document*>(window->document());
    if (!document)
        return;
    const QString folder = QFileInfo(document->fileURL().toLocalFile()).absolutePath();
    auto* const dialog = new QFileDialog(window,
        AppDelegate::tr("Compare \u201c%1\u201d With").arg(document->displayName()), folder);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setLabelText(QFileDialog::Accept, AppDelegate::tr("Co&mpare"));
    dialog->setNameFilters(
        {AppDelegate::tr("PDF files (*.pdf *.PDF)"), AppDelegate::tr("All files (*)")});
    QObject::connect(
        dialog, &QFileDialog::fileSelected, document, [&delegate, document](const QString& path) {
            open(delegate, document, {document, {}, {}}, {nullptr, path, {}});
        });
    dialog->open();
}

} // namespace tarnwick
