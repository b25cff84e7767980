#pragma once

#include "text/TextPosition.h"
#include "text/TextStorage.h"

#include <QList>
#include <QString>

#include <memory>

namespace tarnwick {

/// The part of a text around a place, as one string with numbered places, lines being separated by
/// a line feed. A small text is in it as a whole.
class TextExcerpt
{
public:
    TextExcerpt() = default;
    /// @param reach UTF-16 units before and behind the place that are in it at least, as far as the
    ///   text has them.
    TextExcerpt(std::shared_ptr<const TextStorage> storage, TextPosition centre, qsizetype reach);

    const QString& text() const { return theText; }
    const TextRange& range() const { return theRange; }

    /// Whether a place is in it, and not near an end that is not the text's own.
    bool coversWell(TextPosition position) const;

    /// Places outside become the nearer end.
    int offsetOf(TextPosition position) const;
    TextPosition positionOf(int offset) const;

private:
    std::shared_ptr<const TextStorage> theStorage;
    TextRange theRange;
    qsizetype theReach = 0;
    QString theText;
    QList<qsizetype> theLineStarts; ///< offsets of the lines, the first being cut or not
};

} // namespace tarnwick
