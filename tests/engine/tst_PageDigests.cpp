// What pages are made of, asked of real engines.

#include "pdf/PDFPageDigests.h"

#include "support/PdfBuilder.h"
#include "support/Rows.h"

#include <QSignalSpy>

using namespace tarnwick;

class TestPageDigests : public QObject
{
    Q_OBJECT

private slots:
    void tellPagesApart_data();
    void tellPagesApart();
    void findsChangedPagesOfAVersion();
};

namespace {

QList<PDFPageDigest> digestsOf(const FileBytes& file, int pages, PDFPageDigests::Form form)
{
    PDFPageDigests digests(file, {}, pages, form);
    QSignalSpy spy(&digests, &PDFPageDigests::finished);
    return spy.wait(60'000) ? digests.digests() : QList<PDFPageDigest>(pages);
}

/// Of the file's first page, as text; empty where it is not known.
QByteArray digestOf(const std::string& file)
{
    const PDFPageDigest page
        = digestsOf(*FileBytes::copy(file), 1, PDFPageDigests::Form::isOfContent).first();
    const auto* const bytes = reinterpret_cast<const char*>(page.digest.data());
    return page.isKnown ? QByteArray(bytes, qsizetype(page.digest.size())).toHex() : QByteArray();
}

/// A page with an annotation; parts of it can be others.
struct Parts
{
    std::string content = "some text";
    std::string entries = "/MediaBox [ 0 0 300 300 ]";
    std::string annotation = "/C [ 1 0 0 ]";
    std::string inherited = "/V (a)"; ///< of the annotation's field
    std::string catalog;
    int objectsBefore = 0;

    std::string file() const
    {
        PdfBuilder builder;
        for (int count = 0; count < objectsBefore; ++count)
            builder.addObject("<< /Other true >>");
        const int field = builder.addObject("<< /FT /Tx /T (f) " + inherited + " >>");
        const int mark = builder.addObject("<< /Type /Annot /Subtype /Widget /Rect [ 9 9 90 30 ] "
            + annotation + " /Parent " + std::to_string(field) + " 0 R >>");
        builder.addPage(content, entries + " /Annots [ " + std::to_string(mark) + " 0 R ]");
        return builder.setCatalogEntries(catalog).bytes();
    }
};

template<class Value> std::string with(Value Parts::*part, const Value& value)
{
    Parts parts;
    parts.*part = value;
    return parts.file();
}

std::string with(std::string Parts::*part, const char* value)
{
    return with<std::string>(part, value);
}

} // namespace

using TellPagesApart = Rows<std::string, bool>;

void TestPageDigests::tellPagesApart_data()
{
    const TellPagesApart row;
    const std::string box = "/MediaBox [ 0 0 300 300 ]";
    row("the same page", Parts().file(), true);
    row("other numbers of objects", with(&Parts::objectsBefore, 3), true);
    row("a page of another structure", with(&Parts::entries, box + " /StructParents 4"), true);
    row("other metadata", with(&Parts::entries, box + " /LastModified (D:2026)"), true);
    row("an annotation's page", with(&Parts::annotation, "/C [ 1 0 0 ] /P 4 0 R"), true);
    row("another text", with(&Parts::content, "other text"), false);
    row("another box", with(&Parts::entries, "/MediaBox [ 0 0 300 301 ]"), false);
    row("turned", with(&Parts::entries, box + " /Rotate 90"), false);
    row("an annotation of another colour", with(&Parts::annotation, "/C [ 0 0 1 ]"), false);
    row("another value of its field", with(&Parts::inherited, "/V (b)"), false);
    row("other layers", with(&Parts::catalog, "/OCProperties << /D << >> >>"), false);
    row("another form's font", with(&Parts::catalog, "/AcroForm << /DA (/F 9 Tf) >>"), false);
    row("another outline", with(&Parts::catalog, "/Outlines << /Count 0 >>"), true);
}

void TestPageDigests::tellPagesApart()
{
    const auto [file, isSame] = TellPagesApart::fetch();
    const QByteArray digest = digestOf(file);
    QVERIFY(!digest.isEmpty());
    QCOMPARE(digest == digestOf(Parts().file()), isSame);
}

/// By the place of the streams, and by what they hold.
void TestPageDigests::findsChangedPagesOfAVersion()
{
    PdfBuilder builder;
    for (const char* text : {"one", "two", "three"})
        builder.addPage(text);
    const FileBytes first = *FileBytes::copy(builder.bytes());
    builder.addUpdate(6, "<< /Length 30 >>\nstream\nBT /F1 12 Tf 9 9 Td (2) Tj ET  \nendstream");
    const FileBytes second = *FileBytes::copy(builder.bytes());
    for (const auto form : {PDFPageDigests::Form::isOfContent, PDFPageDigests::Form::isOfPlace}) {
        const QList<PDFPageDigest> before = digestsOf(first, 3, form);
        const QList<PDFPageDigest> after = digestsOf(second, 3, form);
        for (int page = 0; page < 3; ++page) {
            QVERIFY(before.at(page).isKnown && after.at(page).isKnown);
            QCOMPARE(before.at(page).object, after.at(page).object);
            QCOMPARE(before.at(page).digest == after.at(page).digest, page != 1);
        }
    }
}

QTEST_GUILESS_MAIN(TestPageDigests)
#include "tst_PageDigests.moc"
