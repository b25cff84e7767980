// show_page [FILE]: shows a window with the first page of a file, without a display, and ends as
// soon as the page is drawn. Without a file, shows the empty window: what the toolkit takes.

#include "files/FileBytes.h"
#include "pages/PDFView.h"
#include "pdf/PDFDocument.h"

#include <QApplication>
#include <QTimer>

using namespace tarnwick;

namespace {

constexpr int pollMilliseconds = 1;

/// Ends the program once the view has drawn all of what shows.
void endWhenDrawn(PDFView& view)
{
    auto* timer = new QTimer(&view);
    QObject::connect(timer, &QTimer::timeout, &view, [&view] {
        if (view.tileBytes() == 0)
            return;
        view.viewport()->repaint();
        QCoreApplication::quit();
    });
    timer->start(pollMilliseconds);
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    PDFView view;
    view.resize(900, 1100);
    view.show();
    if (argc < 2) {
        view.repaint();
        return 0;
    }
    const auto bytes = FileBytes::read(QString::fromLocal8Bit(argv[1]));
    if (!bytes) {
        qCritical("show_page: cannot read %s", argv[1]);
        return 1;
    }
    PDFDocument document(*bytes);
    QObject::connect(&document, &PDFDocument::opened, &view, [&] {
        view.setDocument(&document, nullptr);
        view.setAutoScales(true);
        endWhenDrawn(view);
    });
    QObject::connect(&document, &PDFDocument::refused, &view, [](const QString& reason) {
        qCritical("show_page: %s", qPrintable(reason));
        QCoreApplication::exit(1);
    });
    return QApplication::exec();
}
