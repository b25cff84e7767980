#pragma once

#include "WrittenFile.h"

namespace tarnwick {

/// Writes the document anew, for readers that go through it by lines and keywords: what can be
/// reached from the catalog and Info, without encryption, nothing packed into object streams, a
/// classic cross-reference table, and the same bytes every time.
///
/// - One object's value on one line, its tokens a single space apart; "stream", "endstream",
///   "trailer" and its dictionary on lines of their own.
/// - Entries that tell the structure come last in their dictionary, where no entry that merely
///   looks like them follows; a catalog's Names and a page's Contents are always references.
/// - The page tree is sound: one catalog, Kids that exist, Count and Parent that fit.
/// - Objects that cannot be read are null.
class FlatWriter : public WrittenFile
{
public:
    /// @param descriptor borrowed, written from its position on.
    FlatWriter(const EngineDocument& document, int descriptor, Progress progress);

    /// @returns FZ_ERROR_NONE, FZ_ERROR_MEMORY when memory or room for the file ran out, another
    ///   error when the file holds fewer pages than the document: damage that shows late makes
    ///   MuPDF look for all objects anew, and it may find fewer.
    int write();
    /// The pages whose content could not be read, once the file is written.
    Losses losses() const;
    /// The numbers that the objects have in the document's file, once the file is written.
    std::vector<std::uint32_t> origins() const { return theObjects.origins(); }

private:
    void writeObject(const WrittenObject& object);
    void writeTrailer(int root, int info);

    std::string structure(const WrittenObject& object);
    std::string catalog(const Entries& entries);
    std::string pages(const WrittenObject& object, const Entries& entries);
    std::string page(const WrittenObject& object, const Entries& entries);
    std::string parentEntry(const WrittenObject& object);

    Progress theProgress;
    int thePagesWritten = 0;
};

} // namespace tarnwick
