#include "ManualLayout.h"

#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QPainter>
#include <QPdfWriter>
#include <QTextBlock>
#include <QTextLayout>
#include <QTextTable>

namespace tarnwick {

namespace {

constexpr double margin = 54.0; // points; A4 then has lines of about 85 characters
constexpr double footHeight = 24.0;
constexpr double bodySize = 10.0;
constexpr double pictureScale = 0.62; // the text in a window is then as large as the text around
constexpr double pixelsPerPoint = 96.0 / 72.0; // the unit of margins and pictures in a layout
const QColor accent(0x1f, 0x4e, 0x8c);
const QColor quiet(0x60, 0x60, 0x60);
const QColor shade(0xf2, 0xf4, 0xf7);

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

/// A block's fragments, to be kept while formats change: positions stay, fragments may join.
QList<QTextFragment> fragmentsOf(const QTextBlock& block)
{
    QList<QTextFragment> fragments;
    for (auto it = block.begin(); !it.atEnd(); ++it)
        fragments << it.fragment();
    return fragments;
}

QTextCursor selected(const QTextBlock& block, const QTextFragment& fragment)
{
    QTextCursor cursor(block);
    cursor.setPosition(fragment.position());
    cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
    return cursor;
}

/// Whether the block is a line of a listing set off by fences.
bool isCode(const QTextBlock& block)
{
    const QTextBlockFormat format = block.blockFormat();
    return format.hasProperty(QTextFormat::BlockCodeFence)
        || format.hasProperty(QTextFormat::BlockCodeLanguage);
}

double headingSize(int level)
{
    return level == 1 ? 26.0 : level == 2 ? 17.0 : 12.5;
}

} // namespace

ManualLayout::ManualLayout(QPdfWriter& device, const QString& source, const QString& folder)
    : theDevice(device)
{
    const QSizeF page = device.pageLayout().fullRect(QPageLayout::Point).size();
    const double unit = device.resolution() / 72.0;
    theDocument.documentLayout()->setPaintDevice(&device);
    theDocument.setDefaultFont(QFont(QStringLiteral("DejaVu Sans"), int(bodySize)));
    theDocument.setDocumentMargin(0);
    theDocument.setPageSize(
        QSizeF(page.width() - 2 * margin, page.height() - 2 * margin - footHeight) * unit);
    theDocument.setMarkdown(source);
    readPictures(folder);
    styleBlocks();
    styleTables();
    addContents();
    collectLinks();
    breakPages();
    fillContents();
    theExtras.title = theTitle;
    theExtras.language = "en-GB";
    theExtras.pageHeight = page.height();
    addExtras();
}

double ManualLayout::points(double deviceUnits) const
{
    return deviceUnits * 72.0 / theDevice.resolution();
}

/// A length in pixels, as left margins take it: a layout scales the other margins to its device.
double ManualLayout::deviceLength(double pixels) const
{
    return pixels / pixelsPerPoint * theDevice.resolution() / 72.0;
}

void ManualLayout::readPictures(const QString& folder)
{
    const double widest = points(theDocument.pageSize().width()) * pixelsPerPoint;
    for (QTextBlock block = theDocument.begin(); block.isValid(); block = block.next()) {
        const QList<QTextFragment> fragments = fragmentsOf(block);
        for (const QTextFragment& fragment : fragments) {
            QTextImageFormat format = fragment.charFormat().toImageFormat();
            if (!format.isValid())
                continue;
            const QImage image(QDir(folder).filePath(format.name()));
            if (image.isNull())
                theProblems << QStringLiteral("%1: no such picture").arg(format.name());
            theDocument.addResource(QTextDocument::ImageResource, QUrl(format.name()), image);
            const double width = qMin(widest, image.width() * pictureScale);
            format.setWidth(width);
            format.setHeight(width * image.height() / qMax(1, image.width()));
            selected(block, fragment).setCharFormat(format);
        }
    }
}

void ManualLayout::styleBlocks()
{
    for (QTextBlock block = theDocument.begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() > 0)
            styleHeading(block);
        else if (isCode(block))
            styleListing(block);
        else if (!QTextCursor(block).currentTable())
            styleParagraph(block);
        styleCode(block);
    }
}

void ManualLayout::styleHeading(const QTextBlock& block)
{
    QTextBlockFormat format = block.blockFormat();
    const int level = format.headingLevel();
    QTextCharFormat text;
    text.setFontPointSize(headingSize(level));
    text.setFontWeight(QFont::Bold);
    text.setForeground(accent);
    text.clearProperty(QTextFormat::FontSizeAdjustment);
    QTextCursor cursor(block);
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    cursor.setCharFormat(text);
    format.setTopMargin(level == 2 ? 26 : 14);
    format.setBottomMargin(level == 1 ? 18 : 7);
    cursor.setBlockFormat(format);
    if (level == 1)
        theTitle = block.text();
}

void ManualLayout::styleListing(const QTextBlock& block)
{
    QTextBlockFormat format = block.blockFormat();
    format.setBackground(shade);
    format.setLeftMargin(deviceLength(8));
    format.setTopMargin(0);
    format.setBottomMargin(isCode(block.next()) ? 0 : 9);
    QTextCursor(block).setBlockFormat(format);
}

void ManualLayout::styleParagraph(const QTextBlock& block)
{
    QTextBlockFormat format = block.blockFormat();
    const bool isItem = block.textList();
    format.setTopMargin(isItem ? 1 : 0);
    format.setBottomMargin(isItem ? 3 : 7);
    // A picture's line is as high as the picture.
    if (!block.text().contains(QChar::ObjectReplacementCharacter))
        format.setLineHeight(118, QTextBlockFormat::ProportionalHeight);
    QTextCursor(block).setBlockFormat(format);
}

void ManualLayout::styleCode(const QTextBlock& block)
{
    QTextCharFormat code;
    code.setFontFamilies({QStringLiteral("DejaVu Sans Mono")});
    code.setFontPointSize(bodySize - 1.0);
    const QList<QTextFragment> fragments = fragmentsOf(block);
    for (const QTextFragment& fragment : fragments) {
        if (fragment.charFormat().fontFixedPitch())
            selected(block, fragment).mergeCharFormat(code);
    }
}

void ManualLayout::styleTables()
{
    const QList<QTextFrame*> frames = theDocument.rootFrame()->childFrames();
    for (QTextFrame* frame : frames) {
        auto* table = qobject_cast<QTextTable*>(frame);
        if (!table)
            continue;
        QTextTableFormat format = table->format();
        format.setBorder(0.5);
        format.setBorderBrush(QColor(0xc0, 0xc8, 0xd2));
        format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        format.setBorderCollapse(true);
        format.setCellPadding(4);
        format.setHeaderRowCount(1);
        format.setBottomMargin(10);
        format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
        table->setFormat(format);
        for (int column = 0; column < table->columns(); ++column) {
            QTextTableCell cell = table->cellAt(0, column);
            QTextCharFormat head = cell.format();
            head.setBackground(shade);
            cell.setFormat(head);
        }
    }
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
        theProblems << QStringLiteral("no title or no chapter");
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
        format.setLeftMargin(deviceLength(indent));
        format.setTopMargin(heading.level == 2 ? 5 : 1);
        format.setProperty(QTextFormat::UserProperty, true); // a line of the contents
        QTextOption::Tab tab;
        tab.type = QTextOption::RightTab;
        tab.position = points(theDocument.pageSize().width()) * pixelsPerPoint - indent;
        format.setTabPositions({tab});
        QTextCharFormat text;
        text.setFontPointSize(bodySize);
        text.setFontWeight(heading.level == 2 ? QFont::Bold : QFont::Normal);
        text.setAnchor(true);
        text.setAnchorHref(u'#' + anchorOf(heading.text));
        cursor.insertBlock(format, text);
        cursor.insertText(heading.text + QStringLiteral("\t000"));
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
            format.setForeground(accent);
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
        if (pageAt(firstLine) == placeOf(block).page)
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
            result << Heading{block.text(), level, placeOf(block)};
    }
    return result;
}

int ManualLayout::pageAt(double top) const
{
    // What begins a page may lie a rounding error above it.
    return int((top + 1.0) / theDocument.pageSize().height());
}

PdfPlace ManualLayout::placeOf(const QTextBlock& block) const
{
    const double height = theDocument.pageSize().height();
    double top = theDocument.documentLayout()->blockBoundingRect(block).top();
    // A block that begins a page is bounded from the end of the one before.
    if (block.layout()->lineCount() > 0)
        top += block.layout()->lineAt(0).y();
    const int page = pageAt(top);
    return {page, margin + points(top - page * height)};
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
            theProblems << QStringLiteral("%1: no such heading").arg(link.target);
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
        made.page = pageAt(top);
        made.area = QRectF(margin + points(left), margin + points(top - made.page * height),
            points(right - left), points(line.height()));
        theExtras.links << made;
    }
}

void ManualLayout::paint()
{
    QPainter painter(&theDevice);
    const QSizeF body = theDocument.pageSize();
    const double unit = theDevice.resolution() / 72.0;
    const int count = theDocument.pageCount();
    for (int page = 0; page < count; ++page) {
        if (page > 0)
            theDevice.newPage();
        painter.save();
        painter.translate(margin * unit, margin * unit - page * body.height());
        const QRectF part(0, page * body.height(), body.width(), body.height());
        painter.setClipRect(part);
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = part;
        context.palette.setColor(QPalette::Text, Qt::black);
        theDocument.documentLayout()->draw(&painter, context);
        painter.restore();

        QFont font(theDocument.defaultFont());
        font.setPointSizeF(bodySize - 2);
        painter.setFont(font);
        painter.setPen(quiet);
        const QRectF foot(
            margin * unit, margin * unit + body.height(), body.width(), footHeight * unit);
        painter.drawText(foot, Qt::AlignLeft | Qt::AlignBottom, theTitle);
        painter.drawText(foot, Qt::AlignRight | Qt::AlignBottom, QString::number(page + 1));
    }
}

} // namespace tarnwick
