#pragma once

#include "PageGeometry.h"
#include "PageSource.h"

#include <QHash>
#include <QObject>

namespace tarnwick {

/// Texts with quads and links of the pages that a view shows, fetched when they are wanted and kept
/// for a bounded number of characters and pages.
class PageDetails : public QObject
{
    Q_OBJECT

public:
    explicit PageDetails(QObject* parent);

    /// Forgets everything and works for another document, or none (null).
    void setSource(std::unique_ptr<PageSource> source);

    /// Fetches what is missing of these pages, one page at a time; requests for others are given
    /// up.
    void want(const PageGeometry::PageRange& pages);

    /// @returns null while the text is not there; valid until the event loop runs again. The text
    /// of a page that cannot be read is empty.
    const PDFPageText* text(int page) const;
    /// The links of a page, empty while they are not there.
    QList<PDFLink> links(int page) const { return theLinks.value(page); }

signals:
    /// A text or the links of the page have come.
    void pageChanged(int page);

private:
    void fetchText();
    void fetchLinks();
    void takeText(int page, const PDFPageText& text);
    void takeLinks(int page, const QList<PDFLink>& links);
    void forgetFarTexts();
    void forgetFarLinks();
    qsizetype linkCount() const; ///< of the pages that are kept
    qsizetype characters() const; ///< of the texts that are kept
    int firstMissing(bool ofText) const;

    std::unique_ptr<PageSource> theSource;
    PageGeometry::PageRange theWanted;
    QHash<int, PDFPageText> theTexts;
    QHash<int, QList<PDFLink>> theLinks;
    PageSource::Pending theTextErrand;
    int theTextPage = -1;
    PageSource::Pending theLinksErrand;
    int theLinksPage = -1;
};

} // namespace tarnwick
