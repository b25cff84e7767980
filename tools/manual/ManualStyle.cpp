#include "ManualStyle.h"

#include "BlockFragments.h"
#include "ManualGeometry.h"

#include <QDir>
#include <QImage>
#include <QTextDocument>
#include <QTextTable>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr double pictureScale = 0.62; // the text in a window is then as large as the text around
const QColor shade(0xf2, 0xf4, 0xf7);

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

const QColor ManualStyle::accent(0x1f, 0x4e, 0x8c);
const QColor ManualStyle::quiet(0x60, 0x60, 0x60);

ManualStyle::ManualStyle(QTextDocument& document, const ManualGeometry& geometry)
    : theDocument(document)
    , theGeometry(geometry)
{
}

void ManualStyle::apply()
{
    styleBlocks();
    styleTables();
}

QStringList ManualStyle::readPictures(const QString& folder)
{
    QStringList problems;
    const double widest = theGeometry.textWidthInPixels();
    for (QTextBlock block = theDocument.begin(); block.isValid(); block = block.next()) {
        const QList<QTextFragment> fragments = fragmentsOf(block);
        for (const QTextFragment& fragment : fragments) {
            QTextImageFormat format = fragment.charFormat().toImageFormat();
            if (!format.isValid())
                continue;
            const QImage image(QDir(folder).filePath(format.name()));
            if (image.isNull())
                problems << u"%1: no such picture"_s.arg(format.name());
            theDocument.addResource(QTextDocument::ImageResource, QUrl(format.name()), image);
            const double width = qMin(widest, image.width() * pictureScale);
            format.setWidth(width);
            format.setHeight(width * image.height() / qMax(1, image.width()));
            selected(block, fragment).setCharFormat(format);
        }
    }
    return problems;
}

void ManualStyle::styleBlocks()
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

void ManualStyle::styleHeading(const QTextBlock& block)
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
}

void ManualStyle::styleListing(const QTextBlock& block)
{
    QTextBlockFormat format = block.blockFormat();
    format.setBackground(shade);
    format.setLeftMargin(theGeometry.leftMargin(8));
    format.setTopMargin(0);
    format.setBottomMargin(isCode(block.next()) ? 0 : 9);
    QTextCursor(block).setBlockFormat(format);
}

void ManualStyle::styleParagraph(const QTextBlock& block)
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

void ManualStyle::styleCode(const QTextBlock& block)
{
    QTextCharFormat code;
    code.setFontFamilies({u"DejaVu Sans Mono"_s});
    code.setFontPointSize(bodySize - 1.0);
    const QList<QTextFragment> fragments = fragmentsOf(block);
    for (const QTextFragment& fragment : fragments) {
        if (fragment.charFormat().fontFixedPitch())
            selected(block, fragment).mergeCharFormat(code);
    }
}

void ManualStyle::styleTables()
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

} // namespace tarnwick
