#pragma once

#include "files/FileBytes.h"
#include "frame/FrameDocument.h"
#include "pdf/PDFDocument.h"
#include "pdf/PDFDocumentText.h"

#include <QPointer>
#include <QString>
#include <QWidget>

namespace tarnwick {

/// What an export takes from an opened document. A document may close while a panel of its is open:
/// its bytes stay, the rest is then null.
struct ExportSource
{
    QString
        filePath; ///< the opened file, or what a saved version of it would be; empty without one
    QString displayName; ///< as windows show it, or that file's name; may be empty
    FileBytes bytes; ///< the file as it was read, or the version
    QPointer<PDFDocument> document; ///< open, or null
    QPointer<PDFDocumentText> text; ///< of that document, or null
    QPointer<QWidget> window; ///< for sheets and notices
    QPointer<FrameDocument> frame; ///< whose other windows take the notices, or null
};

} // namespace tarnwick
