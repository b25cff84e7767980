#include "LinkFollower.h"

#include "PageViewport.h"

#include <QAbstractButton>
#include <QDesktopServices>
#include <QHelpEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QToolTip>
#include <QWidget>

#include <utility>

namespace tarnwick {

namespace {

constexpr int mostTipCharacters = 200; ///< of an address

bool isOpenable(const QUrl& url)
{
    const QString scheme = url.scheme().toLower();
    return scheme == u"http" || scheme == u"https" || scheme == u"mailto";
}

} // namespace

LinkFollower::LinkFollower(
    const PageViewport& viewport, LinksOf linksOf, QWidget* surface, QObject* parent)
    : QObject(parent)
    , theViewport(viewport)
    , theLinksOf(std::move(linksOf))
    , theSurface(surface)
{
}

std::optional<PDFLink> LinkFollower::linkAt(const QPointF& inView) const
{
    if (theViewport.pages().pageCount() == 0)
        return std::nullopt;
    const PagePlace place = theViewport.placeAt(inView);
    for (const PDFLink& link : theLinksOf(place.page)) {
        if (link.area.contains(place.point))
            return link;
    }
    return std::nullopt;
}

QString LinkFollower::shortTarget(const PDFLink& link, int mostCharacters)
{
    return link.page >= 0 ? tr("Page %1").arg(link.page + 1)
                          : link.url.toDisplayString().left(mostCharacters);
}

void LinkFollower::showTip(const QHelpEvent& event) const
{
    if (const std::optional<PDFLink> link = linkAt(event.pos()))
        QToolTip::showText(
            event.globalPos(), shortTarget(*link, mostTipCharacters).toHtmlEscaped(), theSurface);
    else
        QToolTip::hideText();
}

bool LinkFollower::press(const QPointF& inView)
{
    thePressed = linkAt(inView);
    return thePressed.has_value();
}

void LinkFollower::release()
{
    if (const auto link = std::exchange(thePressed, std::nullopt))
        follow(*link);
}

void LinkFollower::follow(const PDFLink& link)
{
    if (link.page >= 0)
        emit pageWanted(link.page, link.point);
    else if (isOpenable(link.url))
        ask(link.url);
    else
        refuse(link.url);
}

void LinkFollower::refuse(const QUrl& url)
{
    auto* const box = new QMessageBox(QMessageBox::Information, tr("Link"),
        tr("This link leads to a file or a program."), QMessageBox::Ok, theSurface);
    box->setInformativeText(
        tr("Such links are never followed:\n%1").arg(url.toDisplayString().left(500)));
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void LinkFollower::ask(const QUrl& url)
{
    auto* const box = new QMessageBox(QMessageBox::Question, tr("Open Link"),
        tr("Open this address outside of the document?"), QMessageBox::Cancel, theSurface);
    box->setTextFormat(Qt::PlainText);
    // As it will be sent, so that no look-alike letter passes for another.
    box->setInformativeText(QString::fromLatin1(url.toEncoded().left(1000)));
    const QPushButton* const open = box->addButton(tr("&Open"), QMessageBox::AcceptRole);
    box->setDefaultButton(QMessageBox::Cancel);
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QMessageBox::buttonClicked, box, [open, url](const QAbstractButton* button) {
        if (static_cast<const void*>(button) == static_cast<const void*>(open))
            QDesktopServices::openUrl(url);
    });
    box->open();
}

} // namespace tarnwick
