#include "ObjectFiles.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

constexpr std::string_view marker = "%%EOF";
/// Looked through for a marker: what was replaced has one behind it, mostly not far.
constexpr std::size_t reach = std::size_t{64} << 20;

SharedBytes shared(const FileBytes& bytes)
{
    return {bytes.view(), bytes.owner()};
}

} // namespace

void ObjectFiles::setDocument(PDFDocument* document)
{
    *this = ObjectFiles();
    theDocument = document;
}

void ObjectFiles::setStoredSource(std::shared_ptr<const SourceText> source)
{
    theStoredSource = std::move(source);
}

void ObjectFiles::setFlattened(const FileBytes& bytes, std::shared_ptr<const SourceText> source)
{
    if (bytes.view().data() != theFlatBytes.view().data())
        theFlatEngines.reset();
    theFlatBytes = bytes;
    theFlatSource = std::move(source);
}

bool ObjectFiles::isOpen() const
{
    return theDocument && theDocument->state() == PDFDocument::State::isOpen;
}

PDFObjectEngines* ObjectFiles::engines(ObjectFile file)
{
    if (!isOpen())
        return nullptr;
    if (file == ObjectFile::isStored)
        return theDocument->objectEngines();
    if (!theFlatEngines && theFlatBytes.size() > 0)
        theFlatEngines = theDocument->objectEnginesFor(theFlatBytes);
    return theFlatEngines.get();
}

PDFObjectEngines* ObjectFiles::versionEngines(std::size_t end)
{
    if (!isOpen())
        return nullptr;
    if (!theVersionEngines || theVersionEnd != end) {
        theVersionEngines = theDocument->objectEnginesFor(theDocument->bytes().prefix(end));
        theVersionEnd = end;
    }
    return theVersionEngines.get();
}

const std::shared_ptr<const SourceText>& ObjectFiles::source(ObjectFile file) const
{
    return file == ObjectFile::isStored ? theStoredSource : theFlatSource;
}

SharedBytes ObjectFiles::bytes(ObjectFile file) const
{
    if (const std::shared_ptr<const SourceText>& known = source(file))
        return {known->theCatalog().bytes(), known};
    if (file == ObjectFile::isFlattened)
        return shared(theFlatBytes);
    return theDocument ? shared(theDocument->bytes()) : SharedBytes();
}

std::size_t versionEndBehind(std::string_view bytes, std::size_t place)
{
    if (place >= bytes.size())
        return 0;
    const std::size_t found = bytes.substr(place, reach).find(marker);
    if (found == std::string_view::npos)
        return 0;
    return std::min(place + found + marker.size() + 1, bytes.size());
}

} // namespace tarnwick
