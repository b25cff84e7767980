#include <QFile>
#include <QTest>

#include <algorithm>
#include <cstring>
#include <elf.h>

/// What the linker has left in the programs' headers, in any build.
class TestHardening : public QObject
{
    Q_OBJECT

private slots:
    void hardensTheProgram_data();
    void hardensTheProgram();
};

namespace {

/// A 64-bit program as it lies in a file, on a machine of its own kind.
class Program
{
public:
    explicit Program(const QString& path)
    {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            theBytes = file.readAll();
        theHeader = at<Elf64_Ehdr>(0);
    }
    Elf64_Ehdr header() const { return theHeader; }

    template<typename Record> Record at(std::uint64_t offset) const
    {
        Record record = {};
        if (offset + sizeof record <= static_cast<std::uint64_t>(theBytes.size()))
            std::memcpy(&record, theBytes.constData() + offset, sizeof record);
        return record;
    }
    QByteArray textAt(std::uint64_t offset) const
    {
        return QByteArray(theBytes.constData() + offset);
    }
    QList<Elf64_Phdr> segments(std::uint32_t type) const
    {
        QList<Elf64_Phdr> found;
        for (unsigned index = 0; index < theHeader.e_phnum; ++index) {
            const auto segment = at<Elf64_Phdr>(theHeader.e_phoff + index * sizeof(Elf64_Phdr));
            if (segment.p_type == type)
                found.append(segment);
        }
        return found;
    }
    /// The values that the dynamic section has for a tag.
    QList<std::uint64_t> dynamic(std::int64_t tag) const
    {
        QList<std::uint64_t> values;
        for (const Elf64_Phdr& segment : segments(PT_DYNAMIC)) {
            for (std::uint64_t place = 0; place < segment.p_filesz; place += sizeof(Elf64_Dyn)) {
                const auto entry = at<Elf64_Dyn>(segment.p_offset + place);
                if (entry.d_tag == tag)
                    values.append(entry.d_un.d_val);
            }
        }
        return values;
    }
    /// Symbols of a table (SHT_DYNSYM, SHT_SYMTAB): name and address.
    QHash<QByteArray, std::uint64_t> symbols(std::uint32_t type) const
    {
        QHash<QByteArray, std::uint64_t> found;
        for (unsigned index = 0; index < theHeader.e_shnum; ++index) {
            const Elf64_Shdr table = section(index);
            if (table.sh_type != type)
                continue;
            const Elf64_Shdr names = section(table.sh_link);
            for (std::uint64_t place = 0; place < table.sh_size; place += sizeof(Elf64_Sym)) {
                const auto symbol = at<Elf64_Sym>(table.sh_offset + place);
                found.insert(textAt(names.sh_offset + symbol.st_name), symbol.st_value);
            }
        }
        return found;
    }
    /// Where in the file something lies that has an address when the program runs.
    std::uint64_t placeOf(std::uint64_t address) const
    {
        for (const Elf64_Phdr& segment : segments(PT_LOAD)) {
            if (address >= segment.p_vaddr && address - segment.p_vaddr < segment.p_filesz)
                return address - segment.p_vaddr + segment.p_offset;
        }
        return 0;
    }

private:
    Elf64_Shdr section(unsigned index) const
    {
        return at<Elf64_Shdr>(theHeader.e_shoff + index * sizeof(Elf64_Shdr));
    }

    QByteArray theBytes;
    Elf64_Ehdr theHeader = {};
};

} // namespace

void TestHardening::hardensTheProgram_data()
{
    QTest::addColumn<QString>("path");
    for (const QString& path : QStringLiteral(TARNWICK_PROGRAMS).split(QLatin1Char('|')))
        QTest::newRow(qPrintable(path.section(QLatin1Char('/'), -1))) << path;
}

void TestHardening::hardensTheProgram()
{
    QFETCH(QString, path);
    const Program program(path);
    QCOMPARE(
        QByteArray(reinterpret_cast<const char*>(program.header().e_ident), 4), QByteArray(ELFMAG));
    const auto flags = [&](std::int64_t tag) { return program.dynamic(tag).value(0, 0); };

    QCOMPARE(int{program.header().e_type}, ET_DYN);
    QVERIFY2((flags(DT_FLAGS_1) & DF_1_PIE) != 0, "lies at one address always");
    QVERIFY2((flags(DT_FLAGS_1) & DF_1_NOW) != 0, "resolves functions while it runs");
    QVERIFY2(!program.segments(PT_GNU_RELRO).isEmpty(), "can write to resolved addresses");
    QVERIFY2(program.dynamic(DT_TEXTREL).isEmpty(), "writes to its code");
    const QList<Elf64_Phdr> stacks = program.segments(PT_GNU_STACK);
    QVERIFY2(stacks.size() == 1 && (stacks.first().p_flags & PF_X) == 0, "runs its stack");
    for (const Elf64_Phdr& segment : program.segments(PT_LOAD))
        QVERIFY2((segment.p_flags & (PF_W | PF_X)) != (PF_W | PF_X), "runs what it writes");

    const auto imports = program.symbols(SHT_DYNSYM);
    QVERIFY2(imports.contains("__stack_chk_fail"), "does not see its stack overrun");
#ifdef TARNWICK_FORTIFIED
    // The windows leave buffers of known size to Qt.
    const bool hasBuffers = !path.endsWith(QStringLiteral("/tarnwick"));
    const auto isChecked = [](const QByteArray& name) { return name.endsWith("_chk"); };
    QVERIFY2(!hasBuffers || std::any_of(imports.keyBegin(), imports.keyEnd(), isChecked),
        "calls unchecked functions");
#endif
#ifdef __CET__
    const std::uint64_t main = program.placeOf(program.symbols(SHT_SYMTAB).value("main"));
    if (main > 0) // it has not been stripped
        QCOMPARE(program.at<std::uint32_t>(main), std::uint32_t{0xfa1e0ff3}); // endbr64
#endif
}

QTEST_APPLESS_MAIN(TestHardening)
#include "tst_Hardening.moc"
