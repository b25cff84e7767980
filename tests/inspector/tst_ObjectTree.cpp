#include "ObjectTreeModel.h"

#include "support/PdfBuilder.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

std::shared_ptr<const SourceText> scanned(const std::string& file)
{
    auto source = std::make_shared<SourceText>(SharedBytes::ofString(file));
    source->makeListing(false);
    return source;
}

QString file(const QString& root)
{
    return u"1 0 obj\n%1\nendobj\n2 0 obj\n<< /Up 1 0 R /Me 2 0 R >>\nendobj\n3 0 obj\n(3 0 R)\n"
           u"endobj\ntrailer\n<< /Root 1 0 R >>\nstartxref\n0\n%%EOF\n"_s.arg(root);
}

} // namespace

class TestObjectTree : public QObject
{
    Q_OBJECT

private slots:
    void opensLevelByLevel_data();
    void opensLevelByLevel();
    void opensManyAtOnce();
    void forgetsWhatItWasReading();
};

void TestObjectTree::opensLevelByLevel_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("path"); // rows that lead to what is opened
    QTest::addColumn<QStringList>("rows"); // what is there then, "+" before what can be opened
    const auto row
        = [](const char* name, const QString& bytes, const QString& path, const QStringList& rows) {
              QTest::addRow("%s", name) << bytes << path << rows;
          };
    row("the trailer", file(u"<< >>"_s), u""_s, {u"+Trailer at offset 85"_s});
    row("its root", file(u"<< /A [ 2 0 R ] >>"_s), u"0"_s, {u"+/Root 1 0 R  Dictionary"_s});
    row("objects in order, a string, one that is nowhere",
        file(u"<< /A [ 3 0 R << /B 2 0 R >> ] /C 99999999999 0 R /D 0 0 R >>"_s), u"0 0"_s,
        {u"/A[0] 3 0 R  String"_s, u"+/A[1]/B 2 0 R  Dictionary"_s,
            u"/C 99999999999 0 R, not listed"_s, u"/D 0 0 R, not listed"_s});
    row("loops", file(u"<< /A 2 0 R >>"_s), u"0 0 0"_s,
        {u"/Up \u21BA 1 0 R, above"_s, u"/Me \u21BA 2 0 R, above"_s});
    row("a long object that refers to nothing", file(u"[ %1 ]"_s.arg(QString(5000, u'1'))),
        u"0 0"_s, {u"Refers to nothing "_s});
    row("without trailer", u"1 0 obj\n<< /Type /Catalog >>\nendobj\n"_s, {},
        {u"+Catalog, without trailer 1 0 R  Catalog"_s});
    row("without anything", u"1 0 obj\n2\nendobj\n"_s, {}, {});
    QStringList rows;
    for (int kid = 0; kid < 10'000; ++kid)
        rows.append(u"[%1] 3 0 R  String"_s.arg(kid));
    row("more than a view takes", file(u"[ %1]"_s.arg(u"3 0 R "_s.repeated(12'345))), u"0 0"_s,
        rows << u"2,345 more "_s);
}

void TestObjectTree::opensLevelByLevel()
{
    QFETCH(QString, file);
    QFETCH(QString, path);
    QFETCH(QStringList, rows);
    ObjectTreeModel model(nullptr);
    QSignalSpy found(&model, &ObjectTreeModel::found);
    model.setSource(scanned(file.toStdString()));
    QVERIFY(found.wait());
    QModelIndex parent;
    for (const QString& step : path.split(u' ', Qt::SkipEmptyParts)) {
        parent = model.index(step.toInt(), 0, parent);
        QVERIFY(model.canFetchMore(parent));
        QSignalSpy opened(&model, &ObjectTreeModel::opened);
        model.fetchMore(parent);
        QVERIFY(opened.wait());
    }
    QStringList shown;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        shown.append((model.hasChildren(index) ? u"+"_s : QString()) + index.data().toString()
            + u' ' + index.siblingAtColumn(1).data().toString());
    }
    QCOMPARE(shown, rows);
}

/// One after the other, not with a thread for each.
void TestObjectTree::opensManyAtOnce()
{
    constexpr int count = 1000;
    ObjectTreeModel model(nullptr);
    QSignalSpy found(&model, &ObjectTreeModel::found);
    QSignalSpy opened(&model, &ObjectTreeModel::opened);
    model.setSource(scanned(file(u"[ %1]"_s.arg(u"2 0 R "_s.repeated(count))).toStdString()));
    QVERIFY(found.wait());
    QModelIndex parent = model.index(0, 0);
    for (int level = 0; level < 2; ++level, parent = model.index(0, 0, parent)) {
        model.fetchMore(parent);
        QVERIFY(opened.wait());
    }
    parent = model.index(0, 0, model.index(0, 0));
    opened.clear();
    for (int row = 0; row < count; ++row)
        model.fetchMore(model.index(row, 0, parent));
    while (opened.size() < count)
        QVERIFY(opened.wait());
    for (int row = 0; row < count; ++row) {
        QCOMPARE(opened[row].first().toModelIndex(), model.index(row, 0, parent));
        QCOMPARE(model.rowCount(model.index(row, 0, parent)), 2);
    }
}

void TestObjectTree::forgetsWhatItWasReading()
{
    ObjectTreeModel model(nullptr);
    QSignalSpy found(&model, &ObjectTreeModel::found);
    QSignalSpy opened(&model, &ObjectTreeModel::opened);
    const auto one = scanned(file(u"<< >>"_s).toStdString());
    model.setSource(one);
    QVERIFY(found.wait());
    model.fetchMore(model.index(0, 0));
    model.setSource(scanned("nothing"));
    QVERIFY(found.wait());
    QCOMPARE(model.rowCount(), 0);
    QVERIFY(opened.isEmpty());
}

QTEST_GUILESS_MAIN(TestObjectTree)

#include "tst_ObjectTree.moc"
