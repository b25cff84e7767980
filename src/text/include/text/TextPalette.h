#pragma once

#include "analysis/ColourRole.h"

#include <QColor>
#include <QPalette>

namespace tarnwick {

/// Contrast of two colours as readers meet it: 1 for equal ones, 21 for black on white (the ratio
/// of relative luminances that the Web Content Accessibility Guidelines define).
double contrastRatio(const QColor& one, const QColor& other);

/// The colours of a text's roles on a background.
///
/// Red, green and blue keep their hue and are made as light or dark as it takes to stand out from
/// the background by at least 4.5 : 1, the ratio asked for text of normal size.
class TextPalette
{
public:
    TextPalette() = default;
    /// Colours on a widget's text background.
    explicit TextPalette(const QPalette& palette);

    /// Black, red, green and blue on white, for paper.
    static TextPalette forPaper();

    QColor colour(ColourRole role) const;

    /// Of what says something about the text and is not part of it: as faint as can be read.
    QColor aside() const { return theAside; }
    /// Behind what does not belong where it stands; text on it is strayText().
    QColor strayBackground() const { return theStrayBackground; }
    QColor strayText() const { return theStrayText; }

    /// Behind a match of a search; text on it is matchText().
    QColor matchBackground() const { return theMatchBackground; }
    QColor matchText() const { return theMatchText; }

private:
    TextPalette(const QColor& text, const QColor& background);

    QColor theDefault{Qt::black};
    QColor theRed{Qt::black};
    QColor theGreen{Qt::black};
    QColor theBlue{Qt::black};
    QColor theAside{Qt::darkGray};
    QColor theStrayBackground{Qt::lightGray};
    QColor theStrayText{Qt::black};
    QColor theMatchBackground{Qt::yellow};
    QColor theMatchText{Qt::black};
};

} // namespace tarnwick
