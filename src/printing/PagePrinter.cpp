#include "printing/PagePrinter.h"

#include "PagePrinting.h"
#include "pages/PDFView.h"
#include "pdf/PDFDocument.h"
#include "printing/PrintPanel.h"
#include "printing/PrintSettings.h"

#include <QPointer>
#include <QPrinter>

#include <algorithm>

namespace tarnwick {

void PagePrinter::printAsSheet(PDFDocument* document, const QString& title, QWidget* window)
{
    std::unique_ptr<QPrinter> printer = PrintSettings::makePrinter();
    printer->setDocName(title);
    auto* const dialog = new PrintPanel(printer.get(), window);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setMinMax(1, std::max(1, document->pageCount()));
    QObject::connect(document, &QObject::destroyed, dialog, &QDialog::reject);
    // The dialog works on the printer to its end: printing takes it over after that.
    const auto shared = std::make_shared<std::unique_ptr<QPrinter>>(std::move(printer));
    const auto isAccepted = std::make_shared<bool>(false);
    QObject::connect(dialog, &QDialog::accepted, window, [isAccepted] { *isAccepted = true; });
    QObject::connect(dialog, &QObject::destroyed, window,
        [document = QPointer<PDFDocument>(document), shared, isAccepted, window] {
            if (document && *isAccepted)
                (new PagePrinting(document, std::move(*shared), window))->start();
        });
    dialog->open();
}

void PagePrinter::serve(PDFView* view)
{
    view->setPrintDelegate([](PDFView* printed) {
        printAsSheet(printed->document(), printed->window()->windowTitle(), printed->window());
    });
}

} // namespace tarnwick
