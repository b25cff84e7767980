#pragma once

#include "EngineDocument.h"
#include "ValueSpelling.h"
#include "protocol/EngineLimits.h"

#include <deque>
#include <unordered_map>
#include <unordered_set>

namespace tarnwick {

/// An object that the file is to hold.
struct WrittenObject
{
    pdf_obj* object = nullptr; ///< kept
    int source = 0; ///< its number in the file; 0 for what stood inside another object there
    int number = 0; ///< its new number
    ObjectType kind = ObjectType::isPlain;
    int parent = 0; ///< for pages and nodes: the node above, by its number in the file; 0 for none
};

/// Whether the document's catalog, page tree nodes and pages are told from other objects.
enum class WrittenStructure
{
    isKept,
    isPlain, ///< a writer makes its own: what still leads to them is like any other object
};

/// The objects of a file that is written, numbered from 1 in the order in which they are met.
///
/// Numbers are given when a reference is written, so one pass over the file is enough, and equal
/// files get equal numbers.
class WrittenObjects
{
public:
    WrittenObjects(const EngineDocument& document, WrittenStructure structure);
    WrittenObjects(const WrittenObjects&) = delete;
    WrittenObjects& operator=(const WrittenObjects&) = delete;
    ~WrittenObjects();

    /// What a reference leads to at last.
    struct Resolved
    {
        pdf_obj* object = nullptr; ///< borrowed; null when there is nothing
        int source = 0; ///< its number in the file; 0 when there was no reference
    };
    Resolved resolve(pdf_obj* reference);

    /// A number for an object that the writer makes itself.
    int reserve();
    /// The new number of what a reference leads to; 0 when there is nothing.
    int numberOf(pdf_obj* reference);
    /// Likewise by its number in the file.
    int numberOf(int source);
    /// Makes an object of its own of what stands inside another, so that a reference stands there.
    int numberOfInner(pdf_obj* object);
    /// New numbers of the kids of a node that are pages or nodes below it. A page that stands in
    /// the tree again gets a copy there, since a page has one parent.
    std::vector<int> kidsOf(const WrittenObject& node, pdf_obj* kids);
    /// The next object to write, whose pointer the caller drops. @returns false when all are done.
    bool takeNext(WrittenObject& next);
    int count() const { return theCount; }
    /// Of each object in the order of the new numbers, from 1 on, the number in the file; 0 for one
    /// without. The first maximumOrigins.
    const std::vector<std::uint32_t>& origins() const { return theOrigins; }
    /// What MuPDF threw when memory ran out; everything else that it throws counts as a null.
    int error() const { return theError; }
    /// Numbers in the file of the objects that could not be read.
    const std::unordered_set<int>& lost() const { return theLost; }
    void addLost(int source) { theLost.insert(source); }

private:
    ObjectType kindOf(int source) const;
    int known(int source) const;
    int add(pdf_obj* object, int source, int parent);
    int count(int source);

    const EngineDocument& theDocument;
    fz_context* theContext;
    WrittenStructure theStructure;
    int theRoot = 0; ///< the catalog's number in the file
    std::unordered_set<int> thePages;
    std::unordered_set<int> thePlacedPages; ///< pages that stand in the new tree already
    std::unordered_map<int, int> theNumbers;
    std::unordered_map<pdf_obj*, int> theInnerNumbers;
    std::deque<WrittenObject> theQueue;
    std::unordered_set<int> theLost;
    std::vector<std::uint32_t> theOrigins;
    int theCount = 0;
    int theError = FZ_ERROR_NONE;
};

} // namespace tarnwick
