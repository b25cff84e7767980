#pragma once

#include "analysis/SourceText.h"
#include "pdf/PDFDocument.h"
#include "pdf/PDFObjectEngines.h"

#include <QPointer>

#include <memory>

namespace tarnwick {

/// Which file an object belongs to: both have numbers of their own.
enum class ObjectFile
{
    isStored,
    isFlattened,
};

/// The files of a document whose objects can be looked into: the stored one, its earlier versions
/// and the flattened one. Engines on them are started when they are asked for.
class ObjectFiles
{
public:
    /// @param document borrowed while it lives; what was known of another one is forgotten.
    void setDocument(PDFDocument* document);
    /// @param source scanned; null while there is none.
    void setStoredSource(std::shared_ptr<const SourceText> source);
    /// @param bytes none while there is no flattened document.
    void setFlattened(const FileBytes& bytes, std::shared_ptr<const SourceText> source);

    /// Null while the document is not open, or has no such file. Lives as long as this object and
    /// the file's bytes.
    PDFObjectEngines* engines(ObjectFile file);
    /// Those on the first bytes of the stored file; replaced by the next call for others. Null
    /// while the document is not open.
    PDFObjectEngines* versionEngines(std::size_t end);
    /// Null while there is none.
    const std::shared_ptr<const SourceText>& source(ObjectFile file) const;
    SharedBytes bytes(ObjectFile file) const;

private:
    bool isOpen() const;

    QPointer<PDFDocument> theDocument;
    std::shared_ptr<const SourceText> theStoredSource;
    std::shared_ptr<const SourceText> theFlatSource;
    FileBytes theFlatBytes;
    std::unique_ptr<PDFObjectEngines> theFlatEngines;
    std::unique_ptr<PDFObjectEngines> theVersionEngines;
    std::size_t theVersionEnd = 0;
};

/// Where the saved version ends that a place of a file belongs to: behind the next marker. 0 where
/// none is near.
std::size_t versionEndBehind(std::string_view bytes, std::size_t place);

} // namespace tarnwick
