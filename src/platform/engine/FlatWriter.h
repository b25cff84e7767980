#pragma once

#include "platform/engine/FlatObjects.h"
#include "platform/engine/FlatOutput.h"
#include "platform/engine/FlatStream.h"

#include <functional>
#include <initializer_list>

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
class FlatWriter
{
public:
    using Progress = std::function<void(int done, int total)>;

    /// @param descriptor borrowed, written from its position on.
    FlatWriter(const EngineDocument& document, int descriptor, Progress progress);

    /// @returns FZ_ERROR_NONE, FZ_ERROR_MEMORY when memory or room for the file ran out.
    int write();
    std::uint64_t size() const { return theOutput.position(); }

private:
    struct Entry
    {
        const char* key = nullptr;
        pdf_obj* value = nullptr; ///< borrowed
    };
    using Entries = std::vector<Entry>;

    void writeHeader();
    void writeObject(const FlatObject& object);
    void writeTrailer(int root, int info);

    std::string structure(const FlatObject& object);
    std::string plain(pdf_obj* object, const FlatStream* stream);
    std::string spelled(pdf_obj* object, const FlatStream* stream, const FlatSpelling& spelling);
    Entries sortedEntries(pdf_obj* dictionary) const;
    std::string_view nameIn(pdf_obj* dictionary, const char* key) const;
    FlatKind wantedKind(pdf_obj* object) const;
    bool mayShowXml(pdf_obj* dictionary, const FlatStream& stream) const;
    std::string catalog(const Entries& entries);
    std::string pages(const FlatObject& object, const Entries& entries);
    std::string page(const FlatObject& object, const Entries& entries);
    std::string parentEntry(const FlatObject& object);
    /// An entry whose value is a reference, made if need be; empty when it leads nowhere.
    std::string referenceEntry(const char* key, const Entries& entries);

    std::string value(pdf_obj* object, const FlatSpelling& spelling, int depth);
    std::string array(pdf_obj* object, const FlatSpelling& spelling, int depth);
    std::string dictionary(pdf_obj* object, const FlatSpelling& spelling, int depth);
    std::string entriesBut(std::initializer_list<std::string_view> keys, const Entries& entries,
        const FlatSpelling& spelling, int depth);
    std::string streamEntries(const FlatStream& stream, const FlatSpelling& spelling);

    const EngineDocument& theDocument;
    fz_context* theContext;
    FlatObjects theObjects;
    FlatOutput theOutput;
    Progress theProgress;
    std::vector<std::uint64_t> theOffsets; ///< of the objects, by number less 1
};
