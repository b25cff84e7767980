#include "pdf/LossText.h"

#include "support/Rows.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

/// What is missing, in words.
class TestLossText : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English)); }
    void namesPages_data();
    void namesPages();
    void saysWhy_data();
    void saysWhy();
    void findsTheReasonOfAPage();
};

using NamesPages = Rows<QList<PDFLosses::Range>, QString>;

void TestLossText::namesPages_data()
{
    const NamesPages row;
    row("none", {}, {});
    row("one page", {{1, 1}}, u"page 2"_s);
    row("neighbours", {{4, 8}}, u"pages 5–9"_s);
    row("two", {{1, 1}, {4, 8}}, u"pages 2 and 5–9"_s);
    row("as many as are named", {{1, 1}, {4, 8}, {2000, 2000}}, u"pages 2, 5–9 and 2,001"_s);
    row("one more", {{1, 1}, {4, 8}, {10, 10}, {12, 12}}, u"pages 2, 5–9, 11 and 1 other"_s);
    row("many more", {{1, 1}, {4, 8}, {10, 10}, {12, 1214}},
        u"pages 2, 5–9, 11 and 1,203 others"_s);
}

void TestLossText::namesPages()
{
    const auto [ranges, named] = NamesPages::fetch();
    QCOMPARE(pageNumbers(ranges, 3), named);
}

using SaysWhy = Rows<QList<PDFLoss>, LossSubject, QStringList>;

void TestLossText::saysWhy_data()
{
    const SaysWhy row;
    using enum PDFLoss;
    row("whole", {isNone, isNone}, LossSubject::isText, {});
    row("slow", {isNone, isTimedOut}, LossSubject::isText,
        {u"No text from page 2: it took longer than 20 seconds."_s});
    row("a sentence for each reason", {isDamaged, isTimedOut, isDamaged, isEngineDead},
        LossSubject::isText,
        {u"No text from page 2: it took longer than 20 seconds."_s,
            u"No text from page 4: the PDF engine ended while it was reading it."_s,
            u"No text from pages 1 and 3: they are too damaged to be read."_s});
    row("cut", {isCut}, LossSubject::isSearch,
        {u"Page 1 was searched only in part: it has more than 3,000,000 characters."_s});
    row("printed", {isOutOfMemory, isDamagedInPart}, LossSubject::isPrint,
        {u"Page 1 was printed empty: it needs more memory than the PDF engine may use."_s,
            u"Page 2 was printed only in part: it is damaged in places."_s});
    row("written", {isDamaged, isDamaged, isNotRead}, LossSubject::isFile,
        {u"Pages 1–2 were written empty: they are too damaged to be read."_s,
            u"Page 3 was written empty: reading stopped before it."_s});
}

void TestLossText::saysWhy()
{
    const auto [pages, subject, sentences] = SaysWhy::fetch();
    PDFLosses losses;
    for (int page = 0; page < pages.size(); ++page)
        losses.add(page, pages.at(page));
    QCOMPARE(lossSentences(losses, subject), sentences);
    QCOMPARE(losses.isEmpty(), lossList(losses, subject).isEmpty());
}

void TestLossText::findsTheReasonOfAPage()
{
    PDFLosses losses;
    losses.add({2, 4, PDFLoss::isTimedOut});
    losses.add({5, 4, PDFLoss::isNotRead});
    losses.add(5, PDFLoss::isTimedOut);
    losses.add(6, PDFLoss::isDamaged);
    QCOMPARE(losses.ranges().size(), 2);
    QList<PDFLoss> each;
    for (const int page : {1, 2, 5, 6, 7})
        each << losses.of(page);
    using enum PDFLoss;
    QCOMPARE(each, QList<PDFLoss>({isNone, isTimedOut, isTimedOut, isDamaged, isNone}));
}

QTEST_APPLESS_MAIN(TestLossText)
#include "tst_LossText.moc"
