#pragma once

#include "FileOutput.h"
#include "LongNames.h"
#include "WrittenObjects.h"
#include "WrittenStream.h"
#include "protocol/EngineLoss.h"

#include <functional>
#include <initializer_list>
#include <map>

namespace tarnwick {

/// A PDF file in the making: objects of the document under new numbers, each value on one line,
/// decrypted and out of object streams, and a classic cross-reference table. The base of the
/// writers, which decide what belongs in the file.
///
/// Objects that cannot be read are null, and counted.
class WrittenFile
{
public:
    using Progress = std::function<void(int done, int total)>;

    /// What is missing of a page, by its index from 0.
    using Losses = std::map<int, EngineLoss>;

    /// Bytes written so far.
    std::uint64_t size() const { return theOutput.position(); }
    /// How many objects of the document could not be read, those of pages included.
    std::size_t lostObjects() const { return theObjects.lost().size(); }

protected:
    struct Entry
    {
        const char* key = nullptr;
        pdf_obj* value = nullptr; ///< borrowed
    };
    using Entries = std::vector<Entry>;

    /// @param descriptor borrowed, written from its position on.
    WrittenFile(const EngineDocument& document, WrittenStructure structure, int descriptor);

    void writeHeader();
    /// @param number one of theObjects, written once. @param stream nothing for an object without.
    void writeObject(int number, std::string_view text, const WrittenStream* stream = nullptr);
    /// An object of the document that is no part of its structure.
    void writePlain(const WrittenObject& object);
    /// The table of what has been written, and the trailer. @param entries all but Size, in order.
    void writeTrailer(const std::string& entries);
    /// @returns FZ_ERROR_NONE, FZ_ERROR_MEMORY when memory or room for the file ran out.
    int finish();

    Entries sortedEntries(pdf_obj* dictionary) const;
    std::string_view nameIn(pdf_obj* dictionary, const char* key) const;
    /// An entry whose value is a reference, made if need be; empty when it leads nowhere.
    std::string referenceEntry(const char* key, const Entries& entries);
    std::string value(pdf_obj* object, const ValueSpelling& spelling, int depth);
    std::string entriesBut(std::initializer_list<std::string_view> keys, const Entries& entries,
        const ValueSpelling& spelling, int depth);
    std::string streamEntries(const WrittenStream& stream, const ValueSpelling& spelling);
    static std::string reference(int number);

    const EngineDocument& theDocument;
    fz_context* theContext;
    WrittenObjects theObjects;
    FileOutput theOutput;

private:
    std::string plain(pdf_obj* object, const WrittenStream* stream);
    std::string spelled(
        pdf_obj* object, const WrittenStream* stream, const ValueSpelling& spelling);
    ObjectType wantedKind(pdf_obj* object) const;
    bool mayShowXml(pdf_obj* dictionary, const WrittenStream& stream) const;
    std::string name(const char* name, const ValueSpelling& spelling);
    std::string array(pdf_obj* object, const ValueSpelling& spelling, int depth);
    std::string dictionary(pdf_obj* object, const ValueSpelling& spelling, int depth);

    LongNames theLongNames;
    std::vector<std::uint64_t> theOffsets; ///< of the objects, by number less 1
};

} // namespace tarnwick
