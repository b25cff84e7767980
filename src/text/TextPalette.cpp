#include "text/TextPalette.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {

namespace {

constexpr double leastContrast = 4.5;

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour)
{
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF())
        + 0.0722 * linear(colour.blueF());
}

QColor mixed(const QColor& from, const QColor& to, float share)
{
    const auto channel = [share](float one, float other) { return one + (other - one) * share; };
    return QColor::fromRgbF(channel(from.redF(), to.redF()), channel(from.greenF(), to.greenF()),
        channel(from.blueF(), to.blueF()));
}

/// The wish, moved towards black or white until it can be read.
QColor legible(const QColor& wish, const QColor& background)
{
    const bool towardsWhite
        = contrastRatio(Qt::white, background) > contrastRatio(Qt::black, background);
    const QColor goal = towardsWhite ? Qt::white : Qt::black;
    constexpr int steps = 50;
    for (int step = 0; step < steps; ++step) {
        // What is judged is the colour as a screen of 8 bits per channel shows it.
        const QColor candidate(
            mixed(wish, goal, static_cast<float>(step) / static_cast<float>(steps)).rgb());
        if (contrastRatio(candidate, background) >= leastContrast)
            return candidate;
    }
    return goal;
}

} // namespace

double contrastRatio(const QColor& one, const QColor& other)
{
    const double first = luminance(one) + 0.05;
    const double second = luminance(other) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

TextPalette::TextPalette(const QPalette& palette)
    : TextPalette(palette.color(QPalette::Text), palette.color(QPalette::Base))
{
}

TextPalette::TextPalette(const QColor& text, const QColor& background)
    : theDefault(legible(text, background))
    , theRed(legible(QColor(0xE0, 0x1B, 0x24), background))
    , theGreen(legible(QColor(0x1F, 0x9D, 0x3A), background))
    , theBlue(legible(QColor(0x1A, 0x5F, 0xE0), background))
    , theAside(legible(mixed(text, background, 0.5f), background))
{
    if (luminance(background) < 0.2) {
        theStrayBackground = QColor(0x5A, 0x38, 0x10);
        theStrayText = QColor(0xFF, 0xE6, 0xC4);
        theMatchBackground = QColor(0x7A, 0x5C, 0x00);
        theMatchText = Qt::white;
    } else {
        theStrayBackground = QColor(0xFF, 0xE3, 0xC2);
        theStrayText = QColor(0x5C, 0x2E, 0x00);
        theMatchBackground = QColor(0xFF, 0xE0, 0x66);
        theMatchText = Qt::black;
    }
}

TextPalette TextPalette::forPaper()
{
    return TextPalette(Qt::black, Qt::white);
}

QColor TextPalette::colour(ColourRole role) const
{
    switch (role) {
    case ColourRole::isRed:
        return theRed;
    case ColourRole::isGreen:
        return theGreen;
    case ColourRole::isBlue:
        return theBlue;
    case ColourRole::isDefault:
        break;
    }
    return theDefault;
}

} // namespace tarnwick
