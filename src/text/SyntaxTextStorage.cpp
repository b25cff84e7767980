#include "text/SyntaxTextStorage.h"

namespace tarnwick {

namespace {

TextMark markOf(const SyntaxStretch& stretch, std::size_t lineBegin)
{
    TextMark mark;
    mark.start = static_cast<qsizetype>(stretch.begin - lineBegin);
    mark.length = static_cast<qsizetype>(stretch.end - stretch.begin);
    mark.kind = TextMark::Kind::isColoured;
    switch (stretch.role) {
    case SyntaxRole::isOperator:
        mark.role = ColourRole::isRed;
        break;
    case SyntaxRole::isName:
        mark.role = ColourRole::isGreen;
        break;
    case SyntaxRole::isString:
        mark.role = ColourRole::isBlue;
        break;
    case SyntaxRole::isComment:
    case SyntaxRole::isData:
        mark.kind = TextMark::Kind::isAside;
        break;
    case SyntaxRole::isPlain:
        break;
    }
    return mark;
}

} // namespace

TextLine SyntaxTextStorage::line(qsizetype index, qsizetype position, qsizetype count) const
{
    TextLine line = PlainTextStorage::line(index, position, count);
    const std::size_t begin = *lineOffset(index) + static_cast<std::size_t>(position);
    const std::size_t end = begin + static_cast<std::size_t>(line.text.size());
    for (const SyntaxStretch& stretch : theColours->stretches(begin, end))
        line.marks.append(markOf(stretch, begin));
    return line;
}

} // namespace tarnwick
