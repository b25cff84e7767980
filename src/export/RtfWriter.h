#pragma once

#include "export/AttributedText.h"

#include <QByteArray>

namespace tarnwick {

/// Writes an attributed text as RTF (version 1.9.1), a part at a time, so that neither a long text
/// nor its RTF holds up the event loop.
///
/// Every character survives: ASCII as it is, Latin-1 as \'xx, everything else as \u with both units
/// of a surrogate pair. Line ends become paragraphs, tabs stay tabs; other control characters,
/// which RTF has no place for, are left out, and a lone surrogate becomes U+FFFD.
class RtfWriter
{
public:
    /// @param text borrowed for this object's life.
    explicit RtfWriter(const AttributedText& text);

    /// The next part, some 64 KB, plain ASCII; empty once everything has been given.
    QByteArray next();

    /// UTF-16 units of the text that are in the parts given so far.
    qsizetype writtenLength() const { return thePosition; }

    /// The whole RTF at once.
    static QByteArray write(const AttributedText& text);

private:
    enum class Stage
    {
        isHeader,
        isBody,
        isDone
    };

    void writeHeader();
    void writeFonts();
    void writeColours();
    void writeBodyPart();
    void writeAttributes(const AttributedText::Run& run);
    void writeControl(const char* word, qsizetype value);
    void writeCharacter(const QString& string, qsizetype index);

    const AttributedText& theText;
    Stage theStage = Stage::isHeader;
    qsizetype theRun = 0; ///< the run that thePosition stands in
    qsizetype thePosition = 0;
    QByteArray thePart;
};

} // namespace tarnwick
