#include "PropertyList.h"

#include "BinaryPropertyList.h"
#include "TextPropertyList.h"
#include "XmlPropertyList.h"

namespace tarnwick {

namespace {

/// Whether the bytes look like XML, in whichever encoding. The old text form may begin with "<" as
/// well, but a hexadecimal digit, a blank or ">" follows there.
bool looksLikeXml(const QByteArray& bytes)
{
    QByteArray start = bytes.left(256);
    start.replace('\0', QByteArray()); // UTF-16 and UTF-32 read like ASCII then
    for (const char* mark : {"\xef\xbb\xbf", "\xfe\xff", "\xff\xfe"}) {
        if (start.startsWith(mark))
            start.remove(0, qsizetype(qstrlen(mark)));
    }
    start = start.trimmed();
    return start.startsWith("<?xml") || start.startsWith("<!") || start.startsWith("<plist");
}

} // namespace

std::optional<PropertyList> readPropertyList(const QByteArray& bytes)
{
    if (bytes.startsWith("bplist0"))
        return readBinaryPropertyList(bytes);
    if (looksLikeXml(bytes))
        return readXmlPropertyList(bytes);
    return readTextPropertyList(bytes);
}

} // namespace tarnwick
