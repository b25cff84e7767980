#include "text/TextPalette.h"

#include <QTest>

using namespace tarnwick;

class TestTextPalette : public QObject
{
    Q_OBJECT

private slots:
    void contrastIsThatOfTheGuidelines();
    void everyRoleIsLegible();
};

void TestTextPalette::contrastIsThatOfTheGuidelines()
{
    QCOMPARE(contrastRatio(Qt::black, Qt::white), 21.0);
    QCOMPARE(contrastRatio(Qt::white, Qt::white), 1.0);
    // #767676 is known as the lightest grey that passes 4.5 : 1 on white.
    QVERIFY(contrastRatio(QColor(0x76, 0x76, 0x76), Qt::white) >= 4.5);
    QVERIFY(contrastRatio(QColor(0x77, 0x77, 0x77), Qt::white) < 4.5);
}

void TestTextPalette::everyRoleIsLegible()
{
    // Backgrounds, and whether the colours keep their hues on them.
    const QList<std::pair<QColor, bool>> backgrounds
        = {{Qt::white, true}, {QColor(0xFD, 0xF6, 0xE3), true}, {QColor(0x77, 0x77, 0x77), false},
            {QColor(0x00, 0x2B, 0x36), true}, {QColor(0x1E, 0x1E, 0x1E), true}, {Qt::black, true},
            {Qt::red, false}, {Qt::green, false}};
    for (const auto& [background, keepsHues] : backgrounds) {
        QPalette palette;
        palette.setColor(QPalette::Base, background);
        palette.setColor(QPalette::Text, background); // a theme that forgot its text colour
        const TextPalette colours(palette);
        const QColor red = colours.colour(ColourRole::isRed);
        const QColor green = colours.colour(ColourRole::isGreen);
        const QColor blue = colours.colour(ColourRole::isBlue);
        for (const QColor& colour :
            {colours.colour(ColourRole::isDefault), red, green, blue, colours.aside()})
            QVERIFY2(contrastRatio(colour, background) >= 4.5, qPrintable(background.name()));
        QVERIFY(contrastRatio(colours.matchText(), colours.matchBackground()) >= 4.5);
        QVERIFY(contrastRatio(colours.strayText(), colours.strayBackground()) >= 4.5);
        if (keepsHues) {
            QVERIFY(red.red() > red.green() && red.red() > red.blue());
            QVERIFY(green.green() > green.red() && green.green() > green.blue());
            QVERIFY(blue.blue() > blue.red() && blue.blue() > blue.green());
        }
    }
}

QTEST_APPLESS_MAIN(TestTextPalette)
#include "tst_TextPalette.moc"
