#include "PdfObjects.h"

#include <QCryptographicHash>

#include <algorithm>

namespace tarnwick {

namespace {

/// The number that follows a key, such as the object number of a reference; 0 when there is none.
int numberAfter(const QByteArray& bytes, const QByteArray& key, qsizetype from = 0)
{
    qsizetype at = bytes.indexOf(key, from);
    if (at < 0)
        return 0;
    at += key.size();
    while (at < bytes.size() && (bytes.at(at) == ' ' || bytes.at(at) == '\n'))
        ++at;
    qsizetype end = at;
    while (end < bytes.size() && bytes.at(end) >= '0' && bytes.at(end) <= '9')
        ++end;
    return bytes.mid(at, end - at).toInt();
}

/// Where the objects start, by their numbers; empty when the table is not of the expected kind.
QMap<int, qsizetype> offsetsFrom(const QByteArray& file, qsizetype table)
{
    QMap<int, qsizetype> offsets;
    if (table <= 0 || !file.mid(table).startsWith("xref\n0 "))
        return offsets;
    const int count = numberAfter(file, "xref\n0", table);
    constexpr qsizetype rowSize = 20; // ISO 32000-2, 7.5.4
    const qsizetype rows = file.indexOf('\n', table + 5) + 1;
    if (rows <= 0 || count > (file.size() - rows) / rowSize)
        return offsets;
    for (int object = 1; object < count; ++object) {
        const QByteArray row = file.mid(rows + object * rowSize, rowSize);
        if (row.size() == rowSize && row.at(17) == 'n')
            offsets[object] = row.left(10).toLongLong();
    }
    return offsets;
}

} // namespace

std::optional<PdfObjects> PdfObjects::read(const QByteArray& file)
{
    const qsizetype table = numberAfter(file, "startxref", file.lastIndexOf("startxref"));
    const QMap<int, qsizetype> offsets = offsetsFrom(file, table);
    if (offsets.isEmpty())
        return std::nullopt;
    QList<qsizetype> starts = offsets.values();
    std::sort(starts.begin(), starts.end());

    PdfObjects result;
    result.theHeader = file.left(starts.constFirst());
    starts << table;
    for (auto it = offsets.begin(); it != offsets.end(); ++it) {
        const qsizetype next = *std::upper_bound(starts.cbegin(), starts.cend() - 1, *it);
        const QByteArray object = file.mid(*it, next - *it);
        const qsizetype begin = object.indexOf("obj\n") + 4;
        const qsizetype end = object.lastIndexOf("endobj");
        if (begin < 4 || end < begin)
            return std::nullopt;
        result.theBodies[it.key()] = object.mid(begin, end - begin).trimmed();
    }
    result.theCatalog = numberAfter(file, "/Root", table);
    result.theInfo = numberAfter(file, "/Info", table);
    const bool isWhole = result.theBodies.contains(result.theCatalog)
        && result.theBodies.contains(result.theInfo) && !result.pages().isEmpty();
    return isWhole ? std::optional(result) : std::nullopt;
}

QList<int> PdfObjects::pages() const
{
    const QByteArray tree = theBodies.value(numberAfter(theBodies.value(theCatalog), "/Pages"));
    const qsizetype begin = tree.indexOf('[', tree.indexOf("/Kids"));
    const qsizetype end = tree.indexOf(']', begin);
    QList<int> numbers;
    if (begin < 0 || end < begin)
        return numbers;
    const QList<QByteArray> tokens = tree.mid(begin + 1, end - begin - 1).simplified().split(' ');
    for (qsizetype i = 0; i + 2 < tokens.size(); i += 3) {
        const int page = tokens.at(i).toInt();
        if (!theBodies.contains(page))
            return {};
        numbers << page;
    }
    return numbers;
}

int PdfObjects::add(const QByteArray& body)
{
    const int object = theBodies.isEmpty() ? 1 : theBodies.lastKey() + 1;
    theBodies[object] = body;
    return object;
}

void PdfObjects::replace(int object, const QByteArray& body)
{
    theBodies[object] = body;
}

void PdfObjects::setEntry(int object, const QByteArray& key, const QByteArray& value)
{
    QByteArray& body = theBodies[object];
    const QByteArray start = '\n' + key + ' ';
    const qsizetype earlier = body.indexOf(start);
    if (earlier >= 0)
        body.remove(earlier, body.indexOf('\n', earlier + 1) - earlier);
    const qsizetype end = body.lastIndexOf(">>");
    if (end >= 0)
        body.insert(end, key + ' ' + value + '\n');
}

QByteArray PdfObjects::written() const
{
    QByteArray file = theHeader;
    QByteArray rows;
    int expected = 1;
    for (auto it = theBodies.begin(); it != theBodies.end(); ++it, ++expected) {
        for (; expected < it.key(); ++expected)
            rows += "0000000000 65535 f \n";
        rows += QByteArray::number(file.size()).rightJustified(10, '0') + " 00000 n \n";
        file += QByteArray::number(it.key()) + " 0 obj\n" + *it + "\nendobj\n";
    }
    const QByteArray identifier
        = '<' + QCryptographicHash::hash(file, QCryptographicHash::Sha256).left(16).toHex() + '>';
    const QByteArray size = QByteArray::number(expected);
    const QByteArray table = QByteArray::number(file.size());
    return file + "xref\n0 " + size + "\n0000000000 65535 f \n" + rows + "trailer\n<<\n/Size "
        + size + "\n/Root " + reference(theCatalog) + "\n/Info " + reference(theInfo) + "\n/ID ["
        + identifier + ' ' + identifier + "]\n>>\nstartxref\n" + table + "\n%%EOF\n";
}

} // namespace tarnwick
