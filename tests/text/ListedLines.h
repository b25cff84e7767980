#pragma once

#include "text/TextStorage.h"

#include <QStringList>

#include <algorithm>
#include <utility>

namespace tarnwick {

inline QStringList linesOf(const TextStorage& storage)
{
    QStringList lines;
    for (qsizetype index = 0; index < storage.lineCount(); ++index)
        lines += storage.line(index).text;
    return lines;
}

/// A text of given coloured lines.
class ListedLines : public TextStorage
{
public:
    explicit ListedLines(QList<TextLine> lines)
        : theLines(std::move(lines))
    {
    }

    qsizetype lineCount() const override { return theLines.size(); }
    qsizetype lineLength(qsizetype index) const override { return theLines[index].text.size(); }
    TextLine line(qsizetype index, qsizetype position, qsizetype count) const override
    {
        return {theLines[index].text.mid(position, count), theLines[index].role};
    }

private:
    QList<TextLine> theLines;
};

/// A text of enormous size that is made when asked for: line n holds its number and dots.
class EndlessLines : public TextStorage
{
public:
    EndlessLines(qsizetype lines, qsizetype length)
        : theLineCount(lines)
        , theLength(length)
    {
    }

    qsizetype lineCount() const override { return theLineCount; }
    qsizetype lineLength(qsizetype) const override { return theLength; }
    TextLine line(qsizetype index, qsizetype position, qsizetype count) const override
    {
        QString text(std::min(count, theLength - position), u'.');
        const QString number = QString::number(index);
        for (qsizetype at = position; at < number.size() && at - position < text.size(); ++at)
            text[at - position] = number[at];
        return {text, ColourRole::isGreen};
    }

private:
    qsizetype theLineCount;
    qsizetype theLength;
};

} // namespace tarnwick
