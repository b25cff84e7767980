#include "PropertyList.h"

#include "support/Rows.h"

#include <QTest>

#ifdef TARNWICK_HAS_LIBPLIST
#include <plist/plist.h>
#endif

using namespace Qt::StringLiterals;
using namespace tarnwick;

using List = PropertyList::Array;
using Dictionary = PropertyList::Dictionary;

namespace {

/// The list written out, so that a failing comparison shows what was read.
QString described(const PropertyList& list)
{
    return std::visit(
        [](const auto& value) -> QString {
            using Type = std::decay_t<decltype(value)>;
            QStringList parts;
            if constexpr (std::is_same_v<Type, List>) {
                for (const PropertyList& item : value)
                    parts << described(item);
                return u'(' + parts.join(u',') + u')';
            } else if constexpr (std::is_same_v<Type, Dictionary>) {
                for (auto it = value.begin(); it != value.end(); ++it)
                    parts << it.key() + u'=' + described(*it);
                return u'{' + parts.join(u',') + u'}';
            } else if constexpr (std::is_same_v<Type, QString>)
                return u'"' + value + u'"';
            else if constexpr (std::is_same_v<Type, QByteArray>)
                return u'<' + QString::fromLatin1(value.toHex()) + u'>';
            else if constexpr (std::is_same_v<Type, bool>)
                return value ? u"yes"_s : u"no"_s;
            else if constexpr (std::is_same_v<Type, PropertyList::Date>)
                return u'@' + QString::number(value.seconds, 'f', 3);
            else if constexpr (std::is_same_v<Type, double>)
                return u'~' + QString::number(value, 'g', 17);
            else
                return QString::number(value);
        },
        list.value);
}

QString described(const std::optional<PropertyList>& result)
{
    return result ? described(*result) : u"none"_s;
}

QByteArray bigEndian(quint64 number, int size)
{
    QByteArray bytes;
    for (int i = size - 1; i >= 0; --i)
        bytes += char(number >> (8 * i) & 0xff);
    return bytes;
}

/// A binary list of these objects, two bytes to an offset; the first is the root.
QByteArray binary(const QList<QByteArray>& objects, int referenceSize = 1)
{
    QByteArray file = "bplist00";
    QByteArray table;
    for (const QByteArray& object : objects) {
        table += bigEndian(quint64(file.size()), 2);
        file += object;
    }
    const auto tableStart = quint64(file.size());
    return file + table + QByteArray(6, '\0') + char(2) + char(referenceSize)
        + bigEndian(quint64(objects.size()), 8) + bigEndian(0, 8) + bigEndian(tableStart, 8);
}

QByteArray plist(const QByteArray& value)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + value
        + "</plist>";
}

} // namespace

class TestPropertyList : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void refuses_data();
    void refuses();
    void limitsDepth();
    void agreesWithLibplist();
};

using Reads = Rows<QByteArray, QString>;

void TestPropertyList::reads_data()
{
    const Reads row;

    row("XML: every kind",
        plist("<array><string> a&amp;b </string><integer> -7 </integer><real>1.5</real><true/>"
              "<false/><data> AP\n8= </data><date>2001-01-02T00:00:01Z</date><dict/></array>"),
        "(\" a&b \",-7,~1.5,yes,no,<00ff>,@86401.000,{})");
    row("XML: a dictionary", plist("<dict><key>b</key><array/><key>a</key><string/></dict>"),
        "{a=\"\",b=()}");
    row("XML: the ends of the integers",
        plist(
            "<array><integer>-9223372036854775808</integer><integer>18446744073709551615</integer>"
            "<integer>+0x1F</integer></array>"),
        "(-9223372036854775808,18446744073709551615,31)");
    row("XML: a document type, comments and CDATA",
        "<!DOCTYPE plist PUBLIC \"-//X//DTD\" \"http://x.example/p.dtd\"><plist><!-- a -->"
        "<string>a<![CDATA[<b>]]></string></plist>",
        "\"a<b>\"");
    row("XML: no plist element", "<array><string>a</string></array>", "none");
    row("XML: no plist element behind a declaration", "<?xml version=\"1.0\"?><true/>", "yes");
    row("XML: UTF-16",
        QByteArray("\xff\xfe") + QByteArray::fromHex("3c0070006c006900730074003e00")
            + QByteArray::fromHex("3c0074007200750065002f003e00")
            + QByteArray::fromHex("3c002f0070006c006900730074003e00"),
        "yes");

    row("binary: leaves",
        binary({"\xa8\1\2\3\4\5\6\7\x8", "\x10\xff", "\x13" + bigEndian(quint64(-2), 8), "\x08",
            QByteArray("\x22\x3f\xc0\0\0", 5), QByteArray("\x33\xbf\xf0\0\0\0\0\0\0", 9),
            QByteArray("\x42\0\xff", 3), "\x52\x61\x62", "\x61\x20\xac"}),
        "(255,-2,no,~1.5,@-1.000,<00ff>,\"ab\",\"\u20ac\")");
    row("binary: sixteen bytes, an identifier, UTF-8",
        binary({"\xa3\1\2\3", "\x14" + bigEndian(0, 8) + bigEndian(quint64(-1), 8), "\x80\x05",
            "\x73\xe2\x82\xac"}),
        "(18446744073709551615,{CF$UID=5},\"\u20ac\")");
    row("binary: an object in two places", binary({"\xa2\1\1", "\x51\x61"}), "(\"a\",\"a\")");
    row("binary: a long count", binary({"\x5f\x10\x10ghijklmnopqrstuv"}), "\"ghijklmnopqrstuv\"");
    row("binary: wide references", binary({QByteArray("\xd1\0\1\0\2", 5), "\x51k", "\x09"}, 2),
        "{k=yes}");

    row("text: a feed",
        "// ours\n( { AppName = Tarnwick; /* now */ Version = 1.0;\n"
        "URL = https://a.example/b-1_c; }, )",
        "({AppName=\"Tarnwick\",URL=\"https://a.example/b-1_c\",Version=\"1.0\"})");
    row("text: escapes", R"(("\n\"\\\q", '"\101\341', "\U20ac\
"))",
        "(\"\n\"\\q\",\"\"A\u00c6\",\"\u20ac\n\")");
    row("text: data", "<0f A0\n1 2>", "<0fa012>");
    row("text: UTF-8 with a mark", "\xef\xbb\xbf\"\xe2\x82\xac\"", "\"\u20ac\"");
    row("text: UTF-16", QByteArray("\xfe\xff\0(\0a\0)", 8), "(\"a\")");
    row("text: empty lists", "({}, (), \"\")", "({},(),\"\")");
}

void TestPropertyList::reads()
{
    const auto [bytes, expected] = Reads::fetch();
    QCOMPARE(described(readPropertyList(bytes)), expected);
}

using Refuses = Rows<QByteArray>;

void TestPropertyList::refuses_data()
{
    const Refuses row;

    row("nothing", "");
    row("blanks", " \n");
    row("no text", "\xff\x93\x01");

    row("XML: cut off", "<?xml version=\"1.0\"?><plist><array><string>a</string>");
    row("XML: something behind", plist("<true/>") + "<true/>");
    row("XML: two values", plist("<true/><true/>"));
    row("XML: no value", plist(""));
    row("XML: text between values", plist("<array>a<true/></array>"));
    row("XML: an unknown element", plist("<set/>"));
    row("XML: an element within a text", plist("<string>a<b/></string>"));
    row("XML: a key without a value", plist("<dict><key>a</key></dict>"));
    row("XML: a value without a key", plist("<dict><string>a</string><true/></dict>"));
    row("XML: no number", plist("<integer>1x</integer>"));
    row("XML: two signs", plist("<integer>+-1</integer>"));
    row("XML: a number too far", plist("<integer>18446744073709551616</integer>"));
    row("XML: no date", plist("<date>yesterday</date>"));
    row("XML: no base 64", plist("<data>*</data>"));
    QByteArray entities;
    for (char name = 'b'; name <= 'z'; ++name) {
        const char before = char(name - 1);
        entities += QByteArray("<!ENTITY ") + name + " \"&" + before + ";&" + before + ";\">";
    }
    row("XML: entities that double",
        "<!DOCTYPE plist [<!ENTITY a \"aaaaaaaaaa\">" + entities
            + "]><plist><string>&z;</string></plist>");
    row("XML: an entity from a file",
        "<!DOCTYPE plist [<!ENTITY a SYSTEM \"file:///etc/hostname\">]>"
        "<plist><string>&a;</string></plist>");

    const QByteArray good = binary({"\xa2\1\2", "\x51\x61", "\x09"});
    QVERIFY(readPropertyList(good));
    row("binary: no trailer", good.left(8));
    row("binary: cut off", good.chopped(1));
    const auto damaged = [&](qsizetype fromEnd, const QByteArray& bytes) {
        return QByteArray(good).replace(good.size() - fromEnd, bytes.size(), bytes);
    };
    row("binary: offsets of no bytes", damaged(26, QByteArray(1, '\0')));
    row("binary: offsets of nine bytes", damaged(26, "\x09"));
    row("binary: references of no bytes", damaged(25, QByteArray(1, '\0')));
    row("binary: a count past the table", damaged(24, bigEndian(4, 8)));
    row("binary: a count that overflows", damaged(24, bigEndian(quint64(1) << 63, 8)));
    row("binary: a root past the count", damaged(16, bigEndian(3, 8)));
    row("binary: a table past the end", damaged(8, bigEndian(quint64(-1), 8)));
    row("binary: a table in the header", damaged(8, bigEndian(7, 8)));
    row("binary: an object in the header", damaged(38, bigEndian(0, 2)));
    row("binary: an object in the table", damaged(38, bigEndian(quint64(good.size()) - 38, 2)));
    row("binary: a reference past the count", binary({"\xa1\7"}));
    row("binary: a text past its end", binary({"\x55\x61\x62"}));
    row("binary: a text of 2^63 characters", binary({"\x6f\x13" + bigEndian(quint64(1) << 63, 8)}));
    row("binary: a list of 2^61 items", binary({"\xaf\x13" + bigEndian(quint64(1) << 61, 8)}, 8));
    row("binary: a count that is none", binary({"\xaf\x51\x61"}));
    row("binary: a key that is no text", binary({"\xd1\1\1", "\x09"}));
    row("binary: a number of 32 bytes", binary({"\x15" + QByteArray(32, '\1')}));
    row("binary: nothing as a value", binary({QByteArray(1, '\0')}));
    row("binary: a set", binary({"\xc1\1", "\x09"}));
    row("binary: half a surrogate pair", binary({QByteArray("\x61\xd8\x00", 3)}));
    row("binary: a list in itself", binary({QByteArray("\xa2\0\0", 3)}));
    QList<QByteArray> doubling;
    for (char i = 1; i < 60; ++i)
        doubling << QByteArray("\xa2") + i + i;
    row("binary: lists that double", binary(doubling << "\x09"));
    row("binary: a long text in many places",
        binary({"\xaf\x11\x27\x10" + QByteArray(10000, '\1'),
            "\x5f\x11\x4e\x20" + QByteArray(20000, 'a')}));

    row("text: a list cut off", "(a, b");
    row("text: a text cut off", "\"a");
    row("text: an escape cut off", "\"\\");
    row("text: a comment within a list cut off", "(a /*");
    row("text: something behind", "(a) b");
    row("text: no comma", "(a b)");
    row("text: no semicolon", "{ a = b }");
    row("text: no value", "{ a = ; }");
    row("text: half a byte", "<0f0>");
    row("text: no digits", "<0g>");
    row("text: data cut off", "<0f");
    row("text: too many values", '(' + QByteArray("a,").repeated(100'000) + ')');
}

void TestPropertyList::refuses()
{
    const auto [bytes] = Refuses::fetch();
    QCOMPARE(described(readPropertyList(bytes)), u"none"_s);
}

void TestPropertyList::limitsDepth()
{
    for (const int depth : {64, 65, 20'000}) {
        const bool isRead = depth == 64;
        QCOMPARE(readPropertyList(plist(QByteArray("<array>").repeated(depth)
                                      + QByteArray("</array>").repeated(depth)))
                     .has_value(),
            isRead);
        QCOMPARE(
            readPropertyList(QByteArray(depth, '(') + QByteArray(depth, ')')).has_value(), isRead);
        QList<QByteArray> nested;
        for (int i = 1; i < depth; ++i)
            nested << "\xa1" + bigEndian(quint64(i), 2);
        QCOMPARE(readPropertyList(binary(nested << "\xa0", 2)).has_value(), isRead);
    }
}

/// Lists of every kind and of every size that is written in another way, once more as libplist
/// writes them: in XML and in binary.
void TestPropertyList::agreesWithLibplist()
{
#ifdef TARNWICK_HAS_LIBPLIST
    QByteArray many;
    for (int i = 0; i < 700; ++i)
        many += "<integer>" + QByteArray::number(i * i) + "</integer>";
    const QByteArray ours = plist(
        "<array><string/><string>a&lt;&amp;&gt;\"'\n\u00e9\u20ac\U0001f600</string>"
        "<string>"
        + QByteArray(70'000, 'x')
        + "</string>"
          "<integer>0</integer><integer>255</integer><integer>65536</integer>"
          "<integer>1099511627776</integer><integer>9223372036854775807</integer>"
          "<real>0.5</real><real>-1e100</real><true/><false/>"
          "<date>2001-01-01T00:00:00Z</date><date>2023-03-08T20:26:40Z</date><data/>"
          "<data>"
        + QByteArray(1000, '\xfe').toBase64()
        + "</data>"
          "<dict><key>many</key><array>"
        + many
        + "</array></dict>" // more than a byte counts
          "<dict/><array/><dict><key>\u00e9</key><array><string>a</string></array></dict></array>");
    const QString expected = described(readPropertyList(ours));
    QVERIFY(expected != u"none");
    plist_t theirs = nullptr;
    plist_from_xml(ours.constData(), quint32(ours.size()), &theirs);
    using Writer = void (*)(plist_t, char**, quint32*);
    for (const Writer write : {Writer(plist_to_xml), Writer(plist_to_bin)}) {
        char* bytes = nullptr; // libplist writes only where nothing stands yet
        quint32 size = 0;
        write(theirs, &bytes, &size);
        QCOMPARE(described(readPropertyList(QByteArray(bytes, qsizetype(size)))), expected);
        (write == Writer(plist_to_xml) ? plist_to_xml_free : plist_to_bin_free)(bytes);
    }
    plist_free(theirs);
#else
    QSKIP("libplist is not installed");
#endif
}

QTEST_APPLESS_MAIN(TestPropertyList)
#include "tst_PropertyList.moc"
