#pragma once

#include <QColor>
#include <QString>
#include <QStringList>

class QTextBlock;
class QTextDocument;

namespace tarnwick {

class ManualGeometry;

/// What the manual's paragraphs, headings, listings, tables and pictures look like.
class ManualStyle
{
public:
    static constexpr double bodySize = 10.0; ///< points
    static const QColor accent; ///< headings and links
    static const QColor quiet; ///< the foot

    /// Both are borrowed.
    ManualStyle(QTextDocument& document, const ManualGeometry& geometry);

    /// Puts the pictures that the text names into it, no wider than the text. @param folder where
    /// they lie. @returns a line for each that is missing.
    QStringList readPictures(const QString& folder);
    /// Gives all blocks and tables their looks.
    void apply();

private:
    void styleBlocks();
    void styleHeading(const QTextBlock& block);
    void styleListing(const QTextBlock& block);
    static void styleParagraph(const QTextBlock& block);
    static void styleCode(const QTextBlock& block);
    void styleTables();

    QTextDocument& theDocument;
    const ManualGeometry& theGeometry;
};

} // namespace tarnwick
