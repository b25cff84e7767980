// What is a name, a string, an operator in PDF syntax.

#include "analysis/SyntaxColours.h"
#include "support/Rows.h"

#include <string>

using namespace tarnwick;

namespace {

/// "o:BT n:/F1": what is not plain, by the first letters of the roles.
std::string roles(const std::string& text, const SyntaxColours& colours, std::size_t begin)
{
    constexpr std::string_view letters = "-onscd";
    std::string said;
    for (const SyntaxStretch& stretch : colours.stretches(begin, text.size())) {
        said += said.empty() ? "" : " ";
        said += letters[static_cast<std::size_t>(stretch.role)];
        said += ':' + text.substr(stretch.begin, stretch.end - stretch.begin);
    }
    return said;
}

} // namespace

class TestSyntaxColours : public QObject
{
    Q_OBJECT

private slots:
    void tellsRoles_data();
    void tellsRoles();
    void knowsSyntax_data();
    void knowsSyntax();
};

void TestSyntaxColours::tellsRoles_data()
{
    const Rows<std::string, std::string> row;
    row("operators and names", "BT /F1 12 Tf ET", "o:BT n:/F1 o:Tf o:ET");
    row("strings", "(a\\)(b)) Tj <4 1> TJ", "s:(a\\)(b)) o:Tj s:<4 1> o:TJ");
    row("an open string", "q (a b", "o:q s:(a b");
    row("comments", "%a\n1 %b (c\r2 w %d", "c:%a c:%b (c o:w c:%d");
    row("no comment in a string", "(%a) Tj", "s:(%a) o:Tj");
    row("dictionaries and references", "<</A 1 0 R/B[(c)]>> ", "n:/A n:/B s:(c)");
    row("an object", "7 0 obj null endobj", "o:obj o:null o:endobj");
    row("an inline image", "BI /W 1 ID a(% EI b\x01 EI Q",
        "o:BI n:/W o:ID d: a(% EI b\x01  o:EI o:Q");
    row("an image without data", "BI ID EI S", "o:BI o:ID d:  o:EI o:S");
    row("an image without end", "BI ID a b c", "o:BI o:ID d: a b c");
    row("data of no image", "ID a EI (b)", "o:ID o:a o:EI s:(b)");
    row("what is no token", ") > } \x80\xff", "o:\x80\xff");
    row("nothing", "", "");
}

/// Wherever a block of the pass begins in it.
void TestSyntaxColours::tellsRoles()
{
    const auto [text, expected] = Rows<std::string, std::string>::fetch();
    for (std::size_t before = 4095 - text.size(); before <= 4097; ++before) {
        const std::string padded = std::string(before, ' ') + text;
        QCOMPARE(roles(padded, SyntaxColours(padded), before), expected);
        const std::string thrice = std::string(before, ' ') + "BI ID \x01" + std::string(9000, 'x')
            + " EI " + std::string(40, ' ') + text;
        QCOMPARE(roles(thrice, SyntaxColours(thrice), thrice.size() - text.size()), expected);
    }
}

void TestSyntaxColours::knowsSyntax_data()
{
    const Rows<std::string, bool> row;
    row("a content stream", "q 1 0 0 1 0 0 cm /Im0 Do Q", true);
    row("a CMap", "/CIDInit /ProcSet findresource begin 12 dict begin begincmap", true);
    row("an object stream", "1 0 2 10 <</Type/Page>> [1 2]", true);
    row("prose", "So it is with a text of words, i n all", false);
    row("numbers", "1 2 3 4", false);
    row("XML", "<?xpacket begin='' id='W5M0'?><x:xmpmeta>", false);
    row("nothing", "", false);
}

void TestSyntaxColours::knowsSyntax()
{
    const auto [text, isSyntax] = Rows<std::string, bool>::fetch();
    QCOMPARE(SyntaxColours::areSyntax(text), isSyntax);
}

QTEST_APPLESS_MAIN(TestSyntaxColours)
#include "tst_SyntaxColours.moc"
