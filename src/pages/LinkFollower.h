#pragma once

#include "pdf/PDFDocument.h"

#include <QObject>

#include <functional>
#include <optional>

class QHelpEvent;
class QWidget;

namespace tarnwick {

class PageViewport;

/// Finds the links in view and follows them: pages at once, web and mail addresses after the user
/// has seen the address and said yes, files and programs never.
class LinkFollower : public QObject
{
    Q_OBJECT

public:
    /// @returns the links of a page as far as they are known.
    using LinksOf = std::function<QList<PDFLink>(int page)>;

    /// @param viewport borrowed. @param surface the widget that shows it, over which questions
    /// stand.
    LinkFollower(const PageViewport& viewport, LinksOf linksOf, QWidget* surface, QObject* parent);

    std::optional<PDFLink> linkAt(const QPointF& inView) const;
    /// What is shown of a link's target before it is followed.
    static QString shortTarget(const PDFLink& link, int mostCharacters);

    /// Shows the target of the link under the pointer, or nothing where there is none.
    void showTip(const QHelpEvent& event) const;

    void follow(const PDFLink& link);

    /// Takes a press of the mouse on a link. @returns false where there is none.
    bool press(const QPointF& inView);
    /// Follows the link that was pressed.
    void release();
    /// Forgets it: it is not to be followed any more.
    void forgetPress() { thePressed.reset(); }

signals:
    /// A link leads to a place in the document, in page space (PDFPageText).
    void pageWanted(int page, const QPointF& point);

private:
    void ask(const QUrl& url);
    void refuse(const QUrl& url);

    const PageViewport& theViewport;
    LinksOf theLinksOf;
    QWidget* theSurface;
    std::optional<PDFLink> thePressed;
};

} // namespace tarnwick
