#include "help/HelpViewController.h"

#include "pages/PDFView.h"
#include "pdf/PDFDocument.h"
#include "pdf/PDFDocumentText.h"
#include "printing/PagePrinter.h"
#include "ui_HelpWindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QHideEvent>
#include <QShowEvent>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace tarnwick {

HelpViewController::HelpViewController(const QString& file, QWidget* parent)
    : QWidget(parent)
    , theFile(file.isEmpty() ? manualFile() : file)
{
    Ui::HelpWindow ui;
    ui.setupUi(this);
    setHelpPDFView(ui.helpPDFView);
}

HelpViewController::~HelpViewController() = default;

void HelpViewController::setHelpPDFView(PDFView* view)
{
    theOutlet = view;
    PagePrinter::serve(view);
    setFocusProxy(view);
}

QString HelpViewController::manualFile()
{
    const QString name = u"/TarnwickHelp.pdf"_s;
    const QDir programs(QCoreApplication::applicationDirPath());
    // Where an installation has it, and where a build puts it.
    for (const char* folder : {TARNWICK_DATA_FOLDER, "../share/tarnwick"}) {
        const QString file = programs.filePath(QFile::decodeName(folder)) + name;
        if (QFile::exists(file))
            return file;
    }
    return QStandardPaths::locate(QStandardPaths::GenericDataLocation, u"tarnwick"_s + name);
}

void HelpViewController::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous())
        load();
}

void HelpViewController::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (event->spontaneous())
        return;
    theOutlet->setDocument(nullptr, nullptr);
    theText.reset();
    theManual.reset();
}

void HelpViewController::load()
{
    if (theFile.isEmpty())
        return;
    const std::optional<FileBytes> bytes = FileBytes::read(theFile);
    if (!bytes)
        return;
    theText.reset();
    theManual = std::make_unique<PDFDocument>(*bytes);
    connect(theManual.get(), &PDFDocument::opened, this, &HelpViewController::showManual);
}

void HelpViewController::showManual()
{
    theText = std::make_unique<PDFDocumentText>(theManual.get());
    theOutlet->setDocument(theManual.get(), theText.get());
    theOutlet->setAutoScales(true);
}

void HelpViewController::autoZoom()
{
    theOutlet->setAutoScales(true);
}

} // namespace tarnwick
