#include "views/TextPalette.h"

#include <QTest>

class TestTextPalette : public QObject
{
    Q_OBJECT

private slots:
    void contrastIsThatOfTheGuidelines();
    void everyRoleIsLegible_data();
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

void TestTextPalette::everyRoleIsLegible_data()
{
    QTest::addColumn<QColor>("background");
    QTest::addColumn<bool>("keepsHues");
    QTest::newRow("white") << QColor(Qt::white) << true;
    QTest::newRow("cream") << QColor(0xFD, 0xF6, 0xE3) << true;
    QTest::newRow("middle grey, hard for both") << QColor(0x77, 0x77, 0x77) << false;
    QTest::newRow("dark blue") << QColor(0x00, 0x2B, 0x36) << true;
    QTest::newRow("dark grey") << QColor(0x1E, 0x1E, 0x1E) << true;
    QTest::newRow("black") << QColor(Qt::black) << true;
    QTest::newRow("red") << QColor(Qt::red) << false;
    QTest::newRow("green") << QColor(Qt::green) << false;
}

void TestTextPalette::everyRoleIsLegible()
{
    QFETCH(QColor, background);
    QFETCH(bool, keepsHues);
    QPalette palette;
    palette.setColor(QPalette::Base, background);
    palette.setColor(QPalette::Text, background); // a theme that forgot its text colour
    const TextPalette colours(palette);
    const QColor red = colours.colour(ColourRole::isRed);
    const QColor green = colours.colour(ColourRole::isGreen);
    const QColor blue = colours.colour(ColourRole::isBlue);
    for (const QColor& colour : {colours.colour(ColourRole::isDefault), red, green, blue})
        QVERIFY(contrastRatio(colour, background) >= 4.5);
    QVERIFY(contrastRatio(colours.matchText(), colours.matchBackground()) >= 4.5);
    if (keepsHues) {
        QVERIFY(red.red() > red.green() && red.red() > red.blue());
        QVERIFY(green.green() > green.red() && green.green() > green.blue());
        QVERIFY(blue.blue() > blue.red() && blue.blue() > blue.green());
    }
}

QTEST_APPLESS_MAIN(TestTextPalette)
#include "tst_TextPalette.moc"
