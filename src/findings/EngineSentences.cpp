#include "EngineSentences.h"

#include <array>
#include <string_view>
#include <vector>

namespace tarnwick {

namespace {

/// What the library's words mean, by their beginnings.
struct Cause
{
    std::string_view remark;
    std::string_view words;
};
constexpr std::array<Cause, 20> causes = {{
    {"cannot recognize version marker", "the file does not begin with a header"},
    {"cannot find startxref", "no startxref was found"},
    {"cannot find xref marker", "there is none where startxref leads"},
    {"cannot recognize xref format", "there is none where startxref leads"},
    {"xref subsection", "its table is damaged"},
    {"xref has too many entries", "its table is damaged"},
    {"malformed xref table", "its table is damaged"},
    {"unexpected EOF in xref table", "its table ends early"},
    {"truncated xref stream", "its stream ends early"},
    {"xref stream", "its stream is damaged"},
    {"expected trailer", "its trailer is missing"},
    {"trailer Size", "Size in its trailer makes no sense"},
    {"found xref was empty", "its table is empty"},
    {"first object in xref is not free", "its first entry is not that of a free object"},
    {"object offset out of range", "an entry leads outside the file"},
    {"object out of range", "an entry is of an object that cannot be"},
    {"invalid reference to an objstm", "an entry leads to an object stream that is not there"},
    {"found object", "an object does not stand where it says"},
    {"expected object number", "an object does not stand where it says"},
    {"cannot parse object", "an object does not stand where it says"},
}};

/// The library says nothing where it finds another object than the one that it looks for.
std::string causeOf(const std::string& remark)
{
    if (remark.empty())
        return "an object does not stand where it says";
    for (const Cause& cause : causes) {
        if (remark.starts_with(cause.remark))
            return std::string(cause.words);
    }
    return "the PDF engine says \"" + remark + '"';
}

std::string pageNumber(int page)
{
    return "page " + std::to_string(page + 1);
}

std::string objectNumber(const EngineFinding& finding)
{
    return "object " + std::to_string(finding.object);
}

std::string sentenceOnFont(const EngineFinding& finding)
{
    if (finding.text.empty())
        return "A font of " + pageNumber(finding.page)
            + " is missing or cannot be read; another one is drawn.";
    return "The font " + finding.text + ", first on " + pageNumber(finding.page)
        + ", is not embedded; another one may be drawn.";
}

std::string sentenceOnImage(const EngineFinding& finding)
{
    const std::string head = "An image or form of " + pageNumber(finding.page) + " cannot be ";
    return finding.text.empty()
        ? head + "read."
        : head + "drawn: its filter " + finding.text + " is none that the PDF engine knows.";
}

std::string sentenceOnLinks(const EngineFinding& finding)
{
    if (finding.said < 0)
        return "The links and annotations of " + pageNumber(finding.page) + " cannot be read.";
    return "There are " + std::to_string(finding.said) + " annotations on "
        + pageNumber(finding.page) + ", of which at most " + std::to_string(maximumLinks)
        + " work as links.";
}

std::string sentenceOnCount(const EngineFinding& finding)
{
    const std::string pages = std::to_string(finding.found);
    return finding.said < 0
        ? "The page tree does not say how many pages it has; " + pages + " are there."
        : "The page tree says that it has " + std::to_string(finding.said) + " pages; " + pages
            + " are there.";
}

} // namespace

std::string engineSentence(const EngineFinding& finding)
{
    switch (finding.code) {
    case EngineFindingCode::isRebuilt:
        return "The file was repaired when it was opened, by looking for every object: its "
               "cross-reference is of no use, since "
            + causeOf(finding.text) + '.';
    case EngineFindingCode::isRebuiltLater:
        return "The file was repaired while its pages were read, by looking for every object: its "
               "cross-reference is wrong, since "
            + causeOf(finding.text) + '.';
    case EngineFindingCode::isPageCountDifferent:
        return sentenceOnCount(finding);
    case EngineFindingCode::isPageInside:
        return "A page or a node of the page tree stands within " + objectNumber(finding)
            + " instead of by itself.";
    case EngineFindingCode::isPageUnreadable:
        return "The page tree leads to " + objectNumber(finding)
            + ", which is missing or cannot be read: pages may be lost.";
    case EngineFindingCode::isPageTreeLoop:
        return "The page tree leads back to " + objectNumber(finding) + ", which is passed over.";
    case EngineFindingCode::isEntryElsewhere:
        return "A cross-reference stream says that " + objectNumber(finding) + " is at offset "
            + std::to_string(finding.said) + ", where it does not stand.";
    case EngineFindingCode::isFontNotEmbedded:
        return sentenceOnFont(finding);
    case EngineFindingCode::isImageLost:
        return sentenceOnImage(finding);
    case EngineFindingCode::isLinksLost:
        return sentenceOnLinks(finding);
    case EngineFindingCode::isPageSizeUnknown:
        return "There is no MediaBox with an area for " + pageNumber(finding.page)
            + "; 612 x 792 points are assumed.";
    case EngineFindingCode::isLabelsLost:
        return "The labels of the pages from " + pageNumber(finding.page)
            + " on are too long to be shown; numbers stand in.";
    }
    return {};
}

std::string encryptionSentence(const EngineEncryption& encryption)
{
    struct Permission
    {
        std::uint32_t bit;
        std::string_view words;
    };
    constexpr std::array<Permission, 8> all
        = {{{1u << 2, "printing"}, {1u << 3, "changing"}, {1u << 4, "copying"},
            {1u << 5, "annotating"}, {1u << 8, "filling in forms"}, {1u << 9, "reading aloud"},
            {1u << 10, "assembling"}, {1u << 11, "printing in high quality"}}};
    std::string withheld;
    constexpr std::uint32_t firstOfRevision3 = 1u << 8;
    for (const Permission& permission : all) {
        if (encryption.revision < 3 && permission.bit >= firstOfRevision3)
            break;
        if ((static_cast<std::uint32_t>(encryption.permissions) & permission.bit) == 0)
            withheld += (withheld.empty() ? "" : ", ") + std::string(permission.words);
    }
    std::string sentence = "The document is encrypted: "
        + (encryption.method.empty() ? "by no known method" : encryption.method) + " with "
        + std::to_string(encryption.keyBits) + " bits (V " + std::to_string(encryption.version)
        + ", R " + std::to_string(encryption.revision) + ')'
        + (encryption.hidesMetadata ? "." : ", its metadata not.");
    return sentence
        + (withheld.empty() ? " Nothing is withheld from its users."
                            : " Withheld from its users: " + withheld + '.');
}

} // namespace tarnwick
