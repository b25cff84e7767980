#include "ManualLayout.h"

#include "BlockFragments.h"
#include "ManualStyle.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QTextLayout>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// The name by which links call a heading.
QString anchorOf(const QString& heading)
{
    QString anchor;
    for (const QChar c : heading.toLower()) {
        if (c.isLetterOrNumber())
            anchor += c;
        else if (c == u' ' || c == u'-')
            anchor += u'-';
    }
    return anchor;
}

} // namespace

ManualLayout::ManualLayout(QPdfWriter& device, const QString& source, const QString& folder)
    : theDevice(device)
    , theGeometry(device, theDocument)
{
    theDocument.setDefaultFont(QFont(u"DejaVu Sans"_s, int(ManualStyle::bodySize)));
    theDocument.setMarkdown(source);
    ManualStyle style(theDocument, theGeometry);
    theProblems = style.readPictures(folder);
    style.apply();
    for (const Heading& heading : headings())
        theTitle = heading.level == 1 ? heading.text : theTitle;
    addContents();
    collectLinks();
    breakPages();
    fillContents();
    theExtras.title = theTitle;
    theExtras.language = "en-GB";
    theExtras.pageHeight = theGeometry.pageHeight();
    addExtras();
}

void ManualLayout::addContents()
{
    QTextBlock title = theDocument.begin();
    while (title.isValid() && title.blockFormat().headingLevel() != 1)
        title = title.next();
    // Behind the lines that follow the title, in front of the first chapter.
    QTextBlock chapter = title;
    while (chapter.isValid() && chapter.blockFormat().headingLevel() != 2)
        chapter = chapter.next();
    if (!chapter.isValid()) {
        theProblems << u"no title or no chapter"_s;
        return;
    }
    QTextBlockFormat first = chapter.blockFormat();
    first.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    QTextCursor(chapter).setBlockFormat(first);
    const QList<Heading> all = headings();
    QTextCursor cursor(chapter.previous());
    cursor.movePosition(QTextCursor::EndOfBlock);
    for (const Heading& heading : all) {
        if (heading.level < 2)
            continue;
        QTextBlockFormat format;
        const double indent = heading.level == 2 ? 0 : 18;
        format.setLeftMargin(theGeometry.leftMargin(indent));
        format.setTopMargin(heading.level == 2 ? 5 : 1);
        format.setProperty(QTextFormat::UserProperty, true); // a line of the contents
        QTextOption::Tab tab;
        tab.type = QTextOption::RightTab;
        tab.position = theGeometry.textWidthInPixels() - indent;
        format.setTabPositions({tab});
        QTextCharFormat text;
        text.setFontPointSize(ManualStyle::bodySize);
        text.setFontWeight(heading.level == 2 ? QFont::Bold : QFont::Normal);
        text.setAnchor(true);
        text.setAnchorHref(u'#' + anchorOf(heading.text));
        cursor.insertBlock(format, text);
        cursor.insertText(heading.text + u"\t000"_s);
    }
}

void ManualLayout::collectLinks()
{
    for (QTextBlock block = theDocument.begin(); block.isValid(); block = block.next()) {
        const QList<QTextFragment> fragments = fragmentsOf(block);
        for (const QTextFragment& fragment : fragments) {
            const QString target = fragment.charFormat().anchorHref();
            if (target.isEmpty())
                continue;
            theLinks << Link{fragment.position(), fragment.length(), target};
            // Painted as text: the painter would make web links of those within the manual.
            QTextCharFormat format = fragment.charFormat();
            format.clearProperty(QTextFormat::IsAnchor);
            format.clearProperty(QTextFormat::AnchorHref);
            format.setFontUnderline(false);
            format.setForeground(ManualStyle::accent);
            selected(block, fragment).setCharFormat(format);
        }
    }
}

/// Moves headings to the page of what they head. Each move may strand one more.
void ManualLayout::breakPages()
{
    for (int round = 0; round < 200 && breakBeforeLonelyHeading(); ++round) { }
}

bool ManualLayout::breakBeforeLonelyHeading()
{
    const QAbstractTextDocumentLayout* layout = theDocument.documentLayout();
    for (QTextBlock block = theDocument.begin(); block.isValid(); block = block.next()) {
        QTextBlockFormat format = block.blockFormat();
        if (format.headingLevel() == 0 || !block.next().isValid()
            || format.pageBreakPolicy() == QTextFormat::PageBreak_AlwaysBefore)
            continue;
        const QTextBlock following = block.next();
        const double firstLine = layout->blockBoundingRect(following).top()
            + (following.layout()->lineCount() > 0 ? following.layout()->lineAt(0).rect().bottom()
                                                   : 0);
        if (theGeometry.pageAt(firstLine) == theGeometry.placeOf(block).page)
            continue;
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        QTextCursor(block).setBlockFormat(format);
        return true;
    }
    return false;
}

void ManualLayout::fillContents()
{
    const QList<Heading> all = headings();
    qsizetype next = 0;
    for (QTextBlock block = theDocument.begin(); block.isValid(); block = block.next()) {
        if (!block.blockFormat().hasProperty(QTextFormat::UserProperty))
            continue;
        while (next < all.size() && all.at(next).level < 2)
            ++next;
        if (next == all.size())
            break;
        QTextCursor cursor(block);
        cursor.movePosition(QTextCursor::EndOfBlock);
        cursor.movePosition(QTextCursor::Left, QTextCursor::KeepAnchor, 3);
        // As wide as the placeholder, so that no position behind it moves.
        cursor.insertText(QString::number(all.at(next++).place.page + 1).rightJustified(3, u' '));
    }
}

QList<ManualLayout::Heading> ManualLayout::headings() const
{
    QList<Heading> result;
    for (QTextBlock block = theDocument.begin(); block.isValid(); block = block.next()) {
        const int level = block.blockFormat().headingLevel();
        if (level > 0)
            result << Heading{block.text(), level, theGeometry.placeOf(block)};
    }
    return result;
}

void ManualLayout::addExtras()
{
    const QList<Heading> all = headings();
    for (const Heading& heading : all)
        theExtras.bookmarks << PdfBookmark{
            heading.text, heading.level, {heading.place.page, qMax(0.0, heading.place.top - 6)}};
    for (const Link& link : theLinks)
        addLink(link);
}

std::optional<PdfPlace> ManualLayout::targetPlace(const QString& target) const
{
    const QList<Heading> all = headings();
    for (const Heading& heading : all) {
        if (u'#' + anchorOf(heading.text) == target)
            return PdfPlace{heading.place.page, qMax(0.0, heading.place.top - 6)};
    }
    return std::nullopt;
}

void ManualLayout::addLink(const Link& link)
{
    PdfLink made;
    if (link.target.startsWith(u'#')) {
        made.place = targetPlace(link.target);
        if (!made.place) {
            theProblems << u"%1: no such heading"_s.arg(link.target);
            return;
        }
    }
    made.address = QUrl(link.target);
    const QTextBlock block = theDocument.findBlock(link.position);
    const QRectF bounds = theDocument.documentLayout()->blockBoundingRect(block);
    const double height = theDocument.pageSize().height();
    const int start = link.position - block.position();
    // One area for each line that the link runs over.
    for (int i = 0; i < block.layout()->lineCount(); ++i) {
        const QTextLine line = block.layout()->lineAt(i);
        const int from = qMax(start, line.textStart());
        const int to = qMin(start + link.length, line.textStart() + line.textLength());
        if (from >= to)
            continue;
        const double left = bounds.left() + line.cursorToX(from);
        const double right = bounds.left() + line.cursorToX(to);
        const double top = bounds.top() + line.y();
        made.page = theGeometry.pageAt(top);
        made.area = QRectF(ManualGeometry::margin + theGeometry.points(left),
            ManualGeometry::margin + theGeometry.points(top - made.page * height),
            theGeometry.points(right - left), theGeometry.points(line.height()));
        theExtras.links << made;
    }
}

void ManualLayout::paint()
{
    QPainter painter(&theDevice);
    const QSizeF body = theDocument.pageSize();
    const double unit = theGeometry.unitsPerPoint();
    const int count = theDocument.pageCount();
    for (int page = 0; page < count; ++page) {
        if (page > 0)
            theDevice.newPage();
        painter.save();
        painter.translate(
            ManualGeometry::margin * unit, ManualGeometry::margin * unit - page * body.height());
        const QRectF part(0, page * body.height(), body.width(), body.height());
        painter.setClipRect(part);
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = part;
        context.palette.setColor(QPalette::Text, Qt::black);
        theDocument.documentLayout()->draw(&painter, context);
        painter.restore();

        QFont font(theDocument.defaultFont());
        font.setPointSizeF(ManualStyle::bodySize - 2);
        painter.setFont(font);
        painter.setPen(ManualStyle::quiet);
        const QRectF foot(ManualGeometry::margin * unit,
            ManualGeometry::margin * unit + body.height(), body.width(),
            ManualGeometry::footHeight * unit);
        painter.drawText(foot, Qt::AlignLeft | Qt::AlignBottom, theTitle);
        painter.drawText(foot, Qt::AlignRight | Qt::AlignBottom, QString::number(page + 1));
    }
}

} // namespace tarnwick
