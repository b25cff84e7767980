#include "LinkFollower.h"

#include "PageViewport.h"
#include "dialogs/Alert.h"

#include <QDesktopServices>
#include <QHelpEvent>
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
    const QString text = tr("This link leads to a file or a program.");
    auto* const alert = new Alert(QMessageBox::Information, tr("Link"), text, theSurface);
    alert->setTexts(
        text, tr("Such links are never followed:\n%1").arg(url.toDisplayString().left(500)));
    alert->comeUp();
}

void LinkFollower::ask(const QUrl& url)
{
    const QString text = tr("Open this address outside of the document?");
    auto* const alert = new Alert(QMessageBox::Question, tr("Open Link"), text, theSurface);
    // As it will be sent, so that no look-alike letter passes for another.
    alert->setTexts(text, QString::fromLatin1(url.toEncoded().left(1000)));
    alert->addAnswer(QMessageBox::Cancel);
    alert->addAnswer(tr("&Open"), [url] { QDesktopServices::openUrl(url); });
    alert->comeUp();
}

} // namespace tarnwick
