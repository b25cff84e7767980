#pragma once

#include "EngineDocument.h"
#include "protocol/DigestMessages.h"

#include <array>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tarnwick {

/// What pages are made of, as digests that are equal where pages are.
///
/// Each object is read once: its own digest has a sign where it refers to another object, and the
/// digest of a page is one over those of all objects that it reaches, in the order in which they
/// are met. So numbers of objects do not count, and what pages share costs little.
class PageDigests
{
public:
    /// @param document borrowed; nothing of it has been drawn so far, since drawing leaves traces
    /// in the library's objects.
    PageDigests(const EngineDocument& document, EngineDigestForm form);

    EngineDigestForm form() const { return theForm; }
    /// @param page index of a page that exists.
    EnginePageDigest of(int page);

private:
    using Sha256 = std::array<unsigned char, 32>;
    /// An object by itself.
    struct Node
    {
        Sha256 digest = {};
        std::vector<int> references; ///< numbers of the objects that it refers to, in order
        bool isRead = false; ///< it is whole
    };
    class Spelling;

    const Node& node(int number);
    Node readNode(int number);
    bool spellStream(Spelling& spelling, pdf_obj* object, int number);
    Node pageNode(pdf_obj* page);
    Node catalogNode();
    /// Takes in an object and all that it reaches. @returns false when some of it is not known.
    bool reach(fz_sha256& state, const Node& start);
    bool isLeftOut(int number) const;

    const EngineDocument& theDocument;
    EngineDigestForm theForm;
    std::unordered_map<int, Node> theNodes;
    std::unordered_set<int> thePages;
    int theRoot = 0;
    std::optional<Node> theCatalog; ///< what of it concerns every page
};

/// The digests of pages. @param digests those of the document, made anew for another form.
int readDigests(const EngineDocument& document, const DigestRequest& request,
    std::optional<PageDigests>& digests, DigestResult& result);

} // namespace tarnwick
