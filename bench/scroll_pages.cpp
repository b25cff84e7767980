// scroll_pages FILE [PAGES]: scrolls a page view and its thumbnails through the first pages (100)
// of a file by wheel steps, 60 a second, without a display, and prints how long events held the
// main thread: by the clock, and in processor time, which other programs do not lengthen.

#include "MeasuringApplication.h"

#include "files/FileBytes.h"
#include "pages/PDFThumbnailView.h"
#include "pages/PDFView.h"
#include "pdf/PDFDocument.h"

#include <QHBoxLayout>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace tarnwick;

namespace {

constexpr int stepMilliseconds = 16;
constexpr int wheelStep = 120;

void print(const MeasuringApplication& application)
{
    using Event = MeasuringApplication::Event;
    for (const auto measure : {&Event::wall, &Event::processor}) {
        const std::vector<Event> events
            = application.longest(measure, application.count() / 1000 + 1);
        std::printf("%s: longest %.1f ms (event %d of %s), 1 of 1000 above %.1f ms\n",
            measure == &Event::wall ? "clock" : "processor", events.front().*measure,
            events.front().type, events.front().receiver, events.back().*measure);
    }
    std::printf("%zu events\n", application.count());
}

void scroll(PDFView& view, int lastPage)
{
    auto* const timer = new QTimer(&view);
    QObject::connect(timer, &QTimer::timeout, &view, [&view, lastPage] {
        const QPointF middle = QRectF(view.viewport()->rect()).center();
        QCoreApplication::postEvent(view.viewport(),
            new QWheelEvent(middle, middle, QPoint(), QPoint(0, -3 * wheelStep), Qt::NoButton,
                Qt::NoModifier, Qt::NoScrollPhase, false));
        if (view.currentPage() >= lastPage)
            QCoreApplication::quit();
    });
    timer->start(stepMilliseconds);
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    MeasuringApplication application(argc, argv);
    const auto bytes = argc > 1 ? FileBytes::read(QString::fromLocal8Bit(argv[1])) : std::nullopt;
    if (!bytes) {
        std::fputs("scroll_pages FILE [PAGES]: no file that can be read\n", stderr);
        return 1;
    }
    const int pages = argc > 2 ? QByteArray(argv[2]).toInt() : 100;
    QWidget window;
    auto* const layout = new QHBoxLayout(&window);
    auto* const thumbnails = new PDFThumbnailView(&window);
    auto* const view = new PDFView(&window);
    thumbnails->setFixedWidth(160);
    layout->addWidget(thumbnails);
    layout->addWidget(view);
    window.resize(1200, 1000);
    window.show();
    PDFDocument document(*bytes);
    QObject::connect(&document, &PDFDocument::opened, view, [&] {
        view->setDocument(&document, nullptr);
        view->setAutoScales(true);
        thumbnails->setPDFView(view);
        application.start();
        scroll(*view, std::min(pages, document.pageCount()) - 1);
    });
    QObject::connect(&document, &PDFDocument::refused, view, [](const QString& reason) {
        qCritical("scroll_pages: %s", qPrintable(reason));
        QCoreApplication::exit(1);
    });
    const int result = QApplication::exec();
    thumbnails->setPDFView(nullptr);
    if (result == 0)
        print(application);
    return result;
}
