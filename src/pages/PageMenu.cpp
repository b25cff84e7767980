#include "PageMenu.h"

#include "LinkFollower.h"
#include "pages/PDFView.h"
#include "pdf/PDFDocument.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr qsizetype mostLinks = 30;
constexpr int mostCharacters = 60; ///< of an address

void addLinks(QMenu& menu, PDFView& view, const QList<PDFLink>& links)
{
    menu.setAttribute(Qt::WA_DeleteOnClose);
    if (links.isEmpty())
        return;
    menu.addSeparator();
    QMenu* const linkMenu = menu.addMenu(PDFView::tr("&Links on This Page"));
    for (const PDFLink& link : links.first(std::min(links.size(), mostLinks))) {
        const QString target = LinkFollower::shortTarget(link, mostCharacters);
        linkMenu->addAction(QString(target).replace(u'&', u"&&"_s), &view,
            [&view, link] { view.followLink(link); });
    }
}

} // namespace

void fillPageMenu(
    QMenu& menu, PDFView& view, const std::optional<PDFLink>& link, const QList<PDFLink>& links)
{
    const auto add = [&](const QString& text, const char* command, void (PDFView::*slot)()) {
        QAction* const action = menu.addAction(text, &view, slot);
        action->setEnabled(view.validateCommand(QString::fromLatin1(command)));
    };
    if (link && !link->url.isEmpty()) {
        menu.addAction(PDFView::tr("Copy Link &Address"), &view,
            [url = link->url] { QApplication::clipboard()->setText(url.toString()); });
        menu.addSeparator();
    }
    add(PDFView::tr("&Copy"), "copy", &PDFView::copy);
    add(PDFView::tr("Select &All"), "selectAll", &PDFView::selectAll);
    menu.addSeparator();
    add(PDFView::tr("&Back"), "goBack", &PDFView::goBack);
    add(PDFView::tr("&Forward"), "goForward", &PDFView::goForward);
    menu.addSeparator();
    add(PDFView::tr("Zoom &In"), "zoomIn", &PDFView::zoomIn);
    add(PDFView::tr("Zoom &Out"), "zoomOut", &PDFView::zoomOut);
    add(PDFView::tr("Fit &Width"), "fitWidth", &PDFView::fitWidth);
    add(PDFView::tr("Fit &Page"), "fitPage", &PDFView::fitPage);
    add(PDFView::tr("Actual &Size"), "actualSize", &PDFView::actualSize);
    addLinks(menu, view, links);
}

} // namespace tarnwick
