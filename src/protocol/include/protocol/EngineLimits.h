#pragma once

#include <cstddef>
#include <cstdint>

namespace tarnwick {

/// How much the PDF engine may be asked for and may answer.
///
/// Most of them stand in the description of a field (EngineMessages.h), from which both ends have
/// them: the engine keeps to them while it writes an answer, and the program refuses an answer that
/// does not, so that a file that has taken the engine over is held by them as well.

constexpr int maximumPageCount = 4'000'000;
constexpr int maximumMeasuredPages = 1000; ///< pages that are measured in one go
constexpr int maximumTileSide = 4096; ///< pixels
constexpr int maximumTilePlace = 1 << 28; ///< pixels from a page's corner
constexpr std::size_t maximumSheets = 1'000'000; ///< to print in one go
/// Bytes of a password: of those that files take, the first 127 count (ISO 32000-2, 7.6.4.3.3).
constexpr std::size_t longestPassword = 4096;

/// Characters of one page's text; what follows is left out. The longest real pages have some
/// 50,000.
constexpr std::uint32_t maximumPageCharacters = 3'000'000;
/// Stretches of one look in a page's text; what follows keeps the look of the last.
constexpr std::uint32_t maximumTextRuns = 200'000;
constexpr std::size_t longestFontName = 127; ///< bytes; the library keeps 31

constexpr std::uint32_t maximumLinks = 20'000; ///< of one page
constexpr std::uint32_t maximumOutlineEntries = 100'000;
constexpr int maximumOutlineDepth = 64; ///< levels
constexpr std::size_t longestTargetText = 4096; ///< bytes of one title or address
/// Bytes of all titles and addresses in one answer; entries and links behind are left out.
constexpr std::size_t maximumTargetTexts = 16u << 20;

/// Bytes of a page label: 255 characters of a prefix and 255 letters of a number.
constexpr std::size_t longestLabel = 4 * 255 + 255;
/// UTF-16 units of one label that are shown, and of all labels of a document; pages behind have
/// their number. Four million usual labels have half.
constexpr int longestShownLabel = 255;
constexpr std::int64_t maximumLabelUnits = 64'000'000;
constexpr std::size_t longestReason = 500; ///< bytes
/// Reports of how far a request is. A flattened document has one for each 500 objects.
constexpr std::uint32_t maximumProgressReports = 1'000'000;

/// The highest number of an object that the engine takes, as the library does: a file's table may
/// be a claim of gigabytes.
constexpr int maximumObjectNumber = 8'388'607;
constexpr std::size_t longestObjectText = 4u << 20; ///< bytes of an object set out; the rest is cut
constexpr int maximumObjectDepth = 100; ///< levels of an object that are set out
constexpr int maximumFilters = 64; ///< of a stream that is decoded
constexpr std::size_t longestFilterText = 4096; ///< bytes of a filter's name, of its parameters
constexpr std::size_t maximumTableRows = 65'536; ///< entries of a file's table told in one go
constexpr std::size_t maximumTableReferences = 1'000'000; ///< in the objects of one go
constexpr std::size_t maximumTableKinds = 4096; ///< of the objects of one go
constexpr std::size_t longestKind = 40; ///< bytes
/// References in all objects of object streams; a file with more is not worth the memory.
constexpr std::size_t maximumReferences = 50'000'000;
/// Objects of a flattened document of which it is told what they were in the file.
constexpr std::size_t maximumOrigins = 16'000'000;
/// Bytes of a stream that are brought when the user has not asked for more. Of 43,507 real streams
/// the largest has 61 MB.
constexpr std::uint64_t usualStream = std::uint64_t{256} << 20;
constexpr std::uint64_t largestStream = std::uint64_t{4} << 30; ///< when the user has

constexpr std::uint32_t maximumSigns = 20'000; ///< of objects that are compared, in one answer
constexpr std::uint32_t maximumSignLinks = 500'000; ///< likewise; more of one object are left out
constexpr std::uint32_t maximumSections = 1000; ///< cross-references in one answer
constexpr std::uint32_t maximumRows = 250'000; ///< of cross-references in one answer
/// Rows of one cross-reference; what follows repeats numbers.
constexpr std::uint32_t maximumSectionRows = 8'388'608;
constexpr int maximumFacts = 40; ///< about one object
constexpr std::size_t longestFact = 4096; ///< bytes
constexpr int maximumPictureSide = 4096; ///< pixels of an image that is brought
/// Bytes that an image may take in the engine, at one for each component of a pixel, before it is
/// reduced; the largest of real files has 151 million pixels.
constexpr std::uint64_t largestDrawnImage = std::uint64_t{1} << 30;

/// Bytes of a file that the engine writes, flattened or printed; the program gives it memory of
/// this size. A million sheets of paper take 300 MB, and a file that holds tags and little else
/// grows to twelve times its size when they are unpacked.
constexpr std::uint64_t largestWrittenFile(std::uint64_t fileSize)
{
    return (std::uint64_t{512} << 20) + 8 * fileSize;
}

/// Characters of all pages of a document: what a book of 20,000 pages has, and more for large
/// files.
constexpr std::uint64_t maximumDocumentCharacters(std::uint64_t fileSize)
{
    return 50'000'000 + 16 * fileSize;
}

} // namespace tarnwick
