#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

namespace tarnwick {

/// Reads RTF back, as far as the writer goes: the text of the body, and how it looks.
class RtfReader
{
public:
    explicit RtfReader(const QByteArray& rtf)
        : theRtf(rtf)
    {
        while (thePosition < theRtf.size())
            step();
    }

    QString text; ///< of the body
    /// "family/half points/bold/italic/colour: text" for each stretch that looks the same.
    QStringList looks;
    /// Every group is closed, and the one that opens the file closes at its end.
    bool isBalanced = true;

private:
    struct State
    {
        bool isFontTable = false;
        bool isColourTable = false;
        int font = 0;
        int size = 0;
        int bold = 0;
        int italic = 0;
        int colour = 0;
    };

    void step()
    {
        const char c = theRtf.at(thePosition++);
        if (c == '{')
            theStack.append(theStack.isEmpty() ? State() : theStack.last());
        else if (c == '}')
            theStack.removeLast();
        else if (c == '\\')
            control();
        else if (c != '\n')
            character(QLatin1Char(c));
        if (theStack.isEmpty() != (thePosition >= theRtf.size() - 1))
            isBalanced = false;
    }

    void control()
    {
        const char c = theRtf.at(thePosition);
        if (c == '\'') {
            character(QChar(theRtf.mid(thePosition + 1, 2).toUShort(nullptr, 16)));
            thePosition += 3;
        } else if (c >= 'a' && c <= 'z') {
            word();
        } else {
            character(QLatin1Char(c));
            ++thePosition;
        }
    }

    void word()
    {
        const auto takeWhile = [this](auto fits) {
            const qsizetype start = thePosition;
            while (fits(theRtf.at(thePosition)))
                ++thePosition;
            return theRtf.mid(start, thePosition - start);
        };
        const QByteArray name = takeWhile([](char c) { return c >= 'a' && c <= 'z'; });
        const QByteArray number
            = takeWhile([](char c) { return c == '-' || (c >= '0' && c <= '9'); });
        if (theRtf.at(thePosition) == ' ')
            ++thePosition;
        apply(name, number.isEmpty() ? 1 : number.toInt());
    }

    void apply(const QByteArray& name, int value)
    {
        State& state = theStack.last();
        const QHash<QByteArray, int*> values
            = {{"f", &state.font}, {"fs", &state.size}, {"b", &state.bold}, {"i", &state.italic},
                {"cf", &state.colour}, {"red", &theRed}, {"green", &theGreen}, {"blue", &theBlue}};
        if (int* const target = values.value(name)) {
            *target = value;
        } else if (name == "par") {
            character(u'\n');
        } else if (name == "tab") {
            character(u'\t');
        } else if (name == "fonttbl") {
            state.isFontTable = true;
        } else if (name == "colortbl") {
            state.isColourTable = true;
        } else if (name == "u") {
            // Sixteen bits with a sign; readers differ on what else they take.
            const bool isInRange = value == static_cast<qint16>(value);
            character(isInRange ? QChar(static_cast<char16_t>(value)) : QChar(u'!'));
            ++thePosition; // the character for readers without Unicode
        }
    }

    void character(QChar c)
    {
        const State& state = theStack.last();
        if (state.isColourTable)
            theColours.append((theRed << 16) + (theGreen << 8) + theBlue);
        else if (state.isFontTable && c != u';')
            theFonts[state.font].append(c);
        else if (!state.isFontTable)
            bodyCharacter(c, state);
    }

    void bodyCharacter(QChar c, const State& state)
    {
        text.append(c);
        using namespace Qt::StringLiterals;
        const QString look = u"%1/%2/%3/%4/%5: "_s.arg(theFonts.value(state.font))
                                 .arg(state.size)
                                 .arg(state.bold)
                                 .arg(state.italic)
                                 .arg(theColours.value(state.colour), 6, 16, QChar(u'0'));
        if (looks.isEmpty() || !looks.last().startsWith(look))
            looks.append(look);
        looks.last().append(c);
    }

    QByteArray theRtf;
    qsizetype thePosition = 0;
    QList<State> theStack;
    QHash<int, QString> theFonts;
    QList<int> theColours;
    int theRed = 0;
    int theGreen = 0;
    int theBlue = 0;
};

} // namespace tarnwick
