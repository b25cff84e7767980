#pragma once

#include "frame/FileVersion.h"

#include <QStringList>

namespace tarnwick {

class AppDelegate;
class Document;
class DocumentWindow;

/// Opens windows in which documents are compared. Each belongs to a document, and goes with it.

/// Compares two saved versions of a document's file.
void compareVersions(
    AppDelegate& delegate, Document* document, const FileVersion& before, const FileVersion& after);
/// Compares the first two of some files, in their order. @param document that the window is to
/// belong to.
void compareFiles(AppDelegate& delegate, Document* document, const QStringList& paths);
/// Asks for a file and compares the document of a window with it.
void compareWithFile(AppDelegate& delegate, DocumentWindow* window);

} // namespace tarnwick
