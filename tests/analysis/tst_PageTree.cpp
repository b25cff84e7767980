#include "analysis/PageTree.h"

#include "analysis/SourceText.h"

#include "support/Rows.h"

#include <QTest>

#include <memory>
#include <string>

using namespace tarnwick;

namespace {

class TestPageTree : public QObject
{
    Q_OBJECT

private slots:
    void leadsToPagesAndBack_data();
    void leadsToPagesAndBack();
};

/// An object on lines of its own.
std::string object(int number, const std::string& body)
{
    return std::to_string(number) + " 0 obj\n" + body + "\nendobj\n";
}

std::string node(int number, const std::string& kids, int count, const std::string& more = {})
{
    return object(number,
        "<< /Type /Pages /Kids [" + kids + "] /Count " + std::to_string(count) + more + " >>");
}

std::string page(int number, int parent)
{
    return object(number, "<< /Type /Page /Parent " + std::to_string(parent) + " 0 R >>");
}

const std::string head = "%PDF-1.7\n" + object(1, "<< /Type /Catalog /Pages 2 0 R >>");
const std::string tail = "trailer\n<< /Root 1 0 R /Size 9 >>\nstartxref\n0\n%%EOF\n";

using LeadsToPagesAndBack = Rows<std::string, QList<int>>;

void TestPageTree::leadsToPagesAndBack_data()
{
    const LeadsToPagesAndBack row;
    row("one node", head + node(2, "3 0 R 4 0 R", 2) + page(3, 2) + page(4, 2) + tail, {3, 4});
    row("nodes in nodes",
        head + node(2, "3 0 R 4 0 R 5 0 R", 4) + page(3, 2)
            + node(4, "6 0 R 7 0 R", 2, " /Parent 2 0 R") + page(6, 4) + page(7, 4) + page(5, 2)
            + tail,
        {3, 6, 7, 5});
    row("an empty node",
        head + node(2, "3 0 R 4 0 R 4 0 R", 1) + node(3, "", 0, " /Parent 2 0 R") + page(4, 2)
            + tail,
        {4, 4});
    row("a kid that is not there", head + node(2, "9 0 R 4 0 R", 1) + page(4, 2) + tail, {4});
    row("a ring", head + node(2, "2 0 R 2 0 R", 5, " /Parent 2 0 R") + tail, {});
    row("a negative count", head + node(2, "3 0 R", -7) + page(3, 2) + tail, {3});
    row("no trailer", head + node(2, "3 0 R", 1) + page(3, 2), {});
    row("a later save without a root",
        head + node(2, "3 0 R", 1) + page(3, 2) + tail
            + "trailer\n<< /Size 9 >>\nstartxref\n0\n%%EOF\n",
        {3});
    row("nothing", {}, {});
}

void TestPageTree::leadsToPagesAndBack()
{
    const auto [file, objects] = LeadsToPagesAndBack::fetch();
    const auto bytes = std::make_shared<const std::string>(file);
    SourceText source({*bytes, bytes});
    QVERIFY(source.scan({}));
    const PageTree tree(source.theCatalog());
    for (int number = 1; number <= objects.size(); ++number) {
        const std::optional<pdfObject> found = tree.page(number);
        QVERIFY2(found, qPrintable(QString::number(number)));
        QCOMPARE(found->objNo(), objects.at(number - 1));
        const int first = static_cast<int>(objects.indexOf(objects.at(number - 1))) + 1;
        QCOMPARE(tree.numberOf(*found), std::optional<std::int64_t>(first));
    }
    QVERIFY(!tree.page(objects.size() + 1));
    QVERIFY(!tree.page(0));
}

} // namespace

QTEST_APPLESS_MAIN(TestPageTree)

#include "tst_PageTree.moc"
