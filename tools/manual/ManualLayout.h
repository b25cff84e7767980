#pragma once

#include "ManualGeometry.h"
#include "PdfFinish.h"

#include <QString>
#include <QTextDocument>

#include <optional>

class QPdfWriter;
class QPainter;

namespace tarnwick {

/// The manual laid out on pages: a title page with the contents, then the chapters.
///
/// The source is Markdown as Qt reads it: "#" is the title, "##" begins a chapter, "###" a
/// section. `[text](#heading-in-small-letters)` leads to a heading. Pictures are named
/// relative to the source's folder and are never wider than the text.
class ManualLayout
{
public:
    /// @param device what the manual will be painted on; must outlive the layout.
    /// @param folder where the pictures lie.
    ManualLayout(QPdfWriter& device, const QString& source, const QString& folder);

    /// What is wrong with the source, for its author: a picture that is missing, a link that leads
    /// to no heading. Empty when all is well.
    QStringList problems() const { return theProblems; }

    /// Paints all pages, each with a foot that has the title and the page's number.
    void paint();

    /// The outline, the links and the rest that the painted file has to get.
    PdfExtras extras() const { return theExtras; }

private:
    struct Heading
    {
        QString text;
        int level = 0;
        PdfPlace place;
    };
    struct Link
    {
        int position = 0; ///< in the document
        int length = 0;
        QString target;
    };

    void addContents();
    void collectLinks();
    void breakPages();
    bool breakBeforeLonelyHeading();
    void fillContents();
    QList<Heading> headings() const;
    void addExtras();
    void addLink(const Link& link);
    std::optional<PdfPlace> targetPlace(const QString& target) const;

    QPdfWriter& theDevice;
    QTextDocument theDocument;
    ManualGeometry theGeometry;
    QString theTitle;
    QList<Link> theLinks;
    QStringList theProblems;
    PdfExtras theExtras;
};

} // namespace tarnwick
