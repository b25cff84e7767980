#include "text/HexView.h"

#include "ClipboardText.h"
#include "HexDigits.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <string_view>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr std::size_t lineSize = HexStorage::bytesPerLine;
constexpr std::size_t groupSize = 8;

/// A key for moving the caret, and its companion that takes the selection along. Targets may lie
/// behind the last byte.
struct Movement
{
    QKeySequence::StandardKey move;
    QKeySequence::StandardKey select;
    std::size_t (*target)(std::size_t byte, bool extend);
};

const std::array movements{
    Movement{QKeySequence::MoveToNextChar, QKeySequence::SelectNextChar,
        [](std::size_t byte, bool) { return byte + 1; }},
    Movement{QKeySequence::MoveToPreviousChar, QKeySequence::SelectPreviousChar,
        [](std::size_t byte, bool) { return byte - std::min<std::size_t>(byte, 1); }},
    Movement{QKeySequence::MoveToNextWord, QKeySequence::SelectNextWord,
        [](std::size_t byte, bool) { return (byte / groupSize + 1) * groupSize; }},
    Movement{QKeySequence::MoveToPreviousWord, QKeySequence::SelectPreviousWord,
        [](std::size_t byte, bool) {
            return (byte - std::min<std::size_t>(byte, 1)) / groupSize * groupSize;
        }},
    Movement{QKeySequence::MoveToStartOfLine, QKeySequence::SelectStartOfLine,
        [](std::size_t byte, bool) { return byte / lineSize * lineSize; }},
    // The caret stays in its line, a selection takes in the line's last byte.
    Movement{QKeySequence::MoveToEndOfLine, QKeySequence::SelectEndOfLine,
        [](std::size_t byte, bool extend) {
            return byte / lineSize * lineSize + lineSize - (extend ? 0 : 1);
        }},
};

/// Bytes of words as PDF has them: neither white space nor delimiters nor control characters.
bool isRegular(char byte)
{
    constexpr std::string_view delimiters = "()<>[]{}/%";
    return static_cast<unsigned char>(byte) > 0x20 && byte != 0x7F
        && delimiters.find(byte) == std::string_view::npos;
}

bool isControl(QChar unit)
{
    const char16_t code = unit.unicode();
    return (code < 0x20 && !(code >= 0x09 && code <= 0x0D)) || (code >= 0x7F && code < 0xA0);
}

} // namespace

HexView::HexView(QWidget* parent)
    : PlainTextView(parent)
{
    setFindBarEnabled(false);
    useFixedPitchFont();
    setWrapping(false);
    setBytes({});
}

void HexView::setBytes(const SharedBytes& bytes, const StrayBytes& stray)
{
    theBytes = std::make_shared<const HexStorage>(bytes, stray);
    setTextStorage(theBytes);
    selectBytes({}); // the caret stands before a byte, not before its offset
}

void HexView::setStray(const StrayBytes& stray)
{
    theBytes = std::make_shared<const HexStorage>(theBytes->bytes(), stray);
    growTextStorage(theBytes);
}

HexView::Span HexView::selectedBytes() const
{
    const std::size_t one = theBytes->byteAt(anchor());
    const std::size_t other = caretByte();
    return {std::min(one, other), std::max(one, other)};
}

void HexView::selectBytes(Span span)
{
    const std::size_t size = theBytes->size();
    const std::size_t begin = std::min(span.begin, size);
    const std::size_t end = std::clamp(span.end, begin, size);
    const auto place = [this](std::size_t byte) { return theBytes->positionOf(byte, theColumn); };
    setSelection(place(begin), place(end));
    scrollTo(place(begin));
}

/// The bytes that are selected, kept alive by their owner.
SharedBytes HexView::selectedPart() const
{
    const Span span = selectedBytes();
    const SharedBytes& all = theBytes->bytes();
    return {all.view.substr(span.begin, span.end - span.begin), all.owner};
}

std::optional<QString> HexView::selectionAsText() const
{
    const std::string_view bytes = selectedPart().view;
    if (bytes.empty() || bytes.size() > longestText)
        return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text
        = decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    if (decoder.hasError() || std::any_of(text.begin(), text.end(), isControl))
        return std::nullopt;
    return text;
}

bool HexView::validateCommand(const QString& command) const
{
    if (command == "copyAsText"_L1)
        return selectionAsText().has_value();
    return command != "toggleWrap"_L1 && PlainTextView::validateCommand(command);
}

void HexView::copy()
{
    const auto digits = std::make_shared<const HexDigits>(selectedPart());
    if (hasSelection())
        ClipboardText::copy(digits, {{}, {0, digits->lineLength(0)}}, this);
}

void HexView::copyAsText()
{
    if (const std::optional<QString> text = selectionAsText())
        QGuiApplication::clipboard()->setText(*text);
}

void HexView::offerPrimarySelection()
{
    const auto digits = std::make_shared<const HexDigits>(selectedPart());
    if (hasSelection())
        ClipboardText::offerAsPrimary(digits, {{}, {0, digits->lineLength(0)}});
}

void HexView::fillContextMenu(QMenu& menu)
{
    addCommand(menu, tr("&Copy"), u"copy"_s, &HexView::copy, QKeySequence::Copy);
    addCommand(menu, tr("Copy as &Text"), u"copyAsText"_s, &HexView::copyAsText);
    addCommand(
        menu, tr("Select &All"), u"selectAll"_s, &HexView::selectAll, QKeySequence::SelectAll);
    menu.addSeparator();
    addZoomMenu(menu);
    menu.addSeparator();
    addCommand(menu, tr("&Print…"), u"print"_s, &HexView::print);
}

TextRange HexView::unitAt(TextPosition position, SelectBy by) const
{
    const std::size_t byte = theBytes->byteAt(position);
    Span span{byte, byte + 1};
    if (by == SelectBy::isWord)
        span = wordAround(byte);
    else if (by == SelectBy::isLine)
        span = {byte / lineSize * lineSize, (byte / lineSize + 1) * lineSize};
    return {theBytes->positionOf(span.begin, theColumn),
        theBytes->positionOf(std::min(span.end, theBytes->size()), theColumn)};
}

/// The run of bytes of a word, or else the byte alone.
HexView::Span HexView::wordAround(std::size_t byte) const
{
    constexpr std::size_t reach = 4096;
    const std::string_view all = theBytes->bytes().view;
    Span span{byte, byte + 1};
    if (byte == all.size() || !isRegular(all[byte]))
        return span;
    while (span.begin > 0 && byte - span.begin < reach && isRegular(all[span.begin - 1]))
        --span.begin;
    while (span.end < all.size() && span.end - byte < reach && isRegular(all[span.end]))
        ++span.end;
    return span;
}

void HexView::settle(TextPosition& anchor, TextPosition& caret) const
{
    for (TextPosition* const place : {&anchor, &caret})
        *place = theBytes->positionOf(theBytes->byteAt(*place), theColumn);
}

QList<TextRange> HexView::selectedRanges(qsizetype line) const
{
    QList<TextRange> ranges;
    addRanges(selectedBytes(), line, ranges);
    return ranges;
}

/// Adds the characters of a span's bytes in a line, in both columns.
void HexView::addRanges(Span span, qsizetype line, QList<TextRange>& ranges) const
{
    const std::size_t lineBegin = static_cast<std::size_t>(line) * lineSize;
    const std::size_t begin = std::max(span.begin, lineBegin);
    const std::size_t end = std::min(span.end, lineBegin + lineSize);
    if (begin < end)
        ranges << theBytes->rangeOf(begin, end, HexStorage::Column::isHex)
               << theBytes->rangeOf(begin, end, HexStorage::Column::isText);
}

QList<TextRange> HexView::visibleMatches() const
{
    QList<TextRange> ranges;
    if (!theMatchFinder)
        return ranges;
    const qsizetype first = positionAt({}).line;
    const qsizetype last = positionAt(QPointF(0, viewport()->height())).line;
    const QList<Span> matches = theMatchFinder({static_cast<std::size_t>(first) * lineSize,
        static_cast<std::size_t>(last + 1) * lineSize});
    for (const Span& match : matches) {
        const auto from = std::max(first, static_cast<qsizetype>(match.begin / lineSize));
        const auto to = std::min(last, static_cast<qsizetype>((match.end - 1) / lineSize));
        for (qsizetype line = from; line <= to; ++line)
            addRanges(match, line, ranges);
    }
    return ranges;
}

void HexView::moveTo(std::size_t byte, bool extend)
{
    const TextPosition place = theBytes->positionOf(std::min(byte, theBytes->size()), theColumn);
    setSelection(extend ? anchor() : place, place);
    if (extend)
        offerPrimarySelection();
}

/// The byte that the caret stands before is framed in the column where it does not stand.
void HexView::paintEvent(QPaintEvent* event)
{
    PlainTextView::paintEvent(event);
    const std::size_t byte = caretByte();
    if (hasSelection() || byte == theBytes->size())
        return;
    const auto other = theColumn == HexStorage::Column::isHex ? HexStorage::Column::isText
                                                              : HexStorage::Column::isHex;
    const TextRange range = theBytes->rangeOf(byte, byte + 1, other);
    const std::optional<QRectF> left = caretRect(range.begin);
    const std::optional<QRectF> right = caretRect(range.end);
    if (!left || !right)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::Text));
    painter.drawRect(QRectF(left->topLeft(), right->bottomLeft()).adjusted(-0.5, 0.5, -0.5, -0.5));
}

void HexView::keyPressEvent(QKeyEvent* event)
{
    for (const Movement& movement : movements) {
        const bool isSelect = event->matches(movement.select);
        if (!isSelect && !event->matches(movement.move))
            continue;
        moveTo(movement.target(caretByte(), isSelect), isSelect);
        event->accept();
        return;
    }
    PlainTextView::keyPressEvent(event);
}

void HexView::mousePressEvent(QMouseEvent* event)
{
    thePressPoint = event->position();
    isDragMeant = false;
    if (event->button() == Qt::LeftButton)
        theColumn = theBytes->columnOf(positionAt(event->position()));
    PlainTextView::mousePressEvent(event);
}

void HexView::mouseDoubleClickEvent(QMouseEvent* event)
{
    theColumn = theBytes->columnOf(positionAt(event->position()));
    PlainTextView::mouseDoubleClickEvent(event);
}

/// A click selects nothing, a drag the byte that it began on: the two must not be confused.
void HexView::mouseMoveEvent(QMouseEvent* event)
{
    isDragMeant = isDragMeant
        || (event->position() - thePressPoint).manhattanLength()
            >= QApplication::startDragDistance() / 2;
    if (isDragMeant)
        PlainTextView::mouseMoveEvent(event);
}

} // namespace tarnwick
