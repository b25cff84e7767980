#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tarnwick {

/// Builds correct PDF files for tests, one object a few lines, offsets and lengths right.
///
/// Object 1 is the catalog, 2 the one page tree node, 3 the font Helvetica; pages and further
/// objects follow in the order in which they are added. To get a damaged file, damage bytes().
class PdfBuilder
{
public:
    enum class Xref
    {
        isTable, ///< cross-reference table and trailer
        isStream, ///< cross-reference stream, the objects without streams in an object stream
    };

    PdfBuilder();

    PdfBuilder& setVersion(const std::string& version);
    PdfBuilder& setXref(Xref kind);
    /// Entries to stand in the catalog besides Type and Pages, as "/PageLabels << ... >>".
    PdfBuilder& setCatalogEntries(const std::string& entries);
    /// The Info dictionary, as "<< /Title (Report) >>"; none unless set.
    PdfBuilder& setInfo(const std::string& dictionary);

    /// Adds a page of 612 x 792 points with text in Helvetica 12, a line for each "\n".
    /// @param entries further entries of the page, as "/Rotate 90"; a MediaBox, Resources or an
    ///   array of Contents among them replace the usual.
    PdfBuilder& addPage(const std::string& text = {}, const std::string& entries = {});
    /// Adds a page with a content stream of one's own; the font is /F1.
    PdfBuilder& addDrawing(const std::string& content, const std::string& entries = {});

    /// Adds a page that shares the content of the one before it: many pages in a small file.
    /// Precondition: there is one before it.
    PdfBuilder& addSharedPage(const std::string& entries = {});

    /// Adds any object. @returns its number.
    int addObject(const std::string& body);
    /// Adds a stream; entries go into its dictionary with the Length. @returns its number.
    int addStream(const std::string& data, const std::string& entries = {});
    /// The number that the next addObject() or addStream() gives; a page takes two, content first.
    int nextNumber() const { return static_cast<int>(theObjects.size()) + 1; }

    /// Appends an incremental save that replaces an object (ISO 32000-2, 7.5.6). Each call is a
    /// save of its own.
    PdfBuilder& addUpdate(int number, const std::string& body);

    /// The file.
    std::string bytes() const;

private:
    void addPageObject(int contents, const std::string& entries);
    std::string body(int number) const;
    std::string trailerEntries() const;
    void writeTable(std::string& file, const std::map<int, std::size_t>& offsets) const;
    void writeXrefStream(std::string& file, std::map<int, std::size_t> offsets) const;
    std::string objectStream(std::vector<int>& numbers) const;

    std::string theVersion = "1.7";
    Xref theXref = Xref::isTable;
    std::string theCatalogEntries;
    std::vector<std::string> theObjects; ///< bodies by number less 1; 1 and 2 are made at the end
    std::vector<int> thePages;
    int theLastContents = 0;
    int theInfo = 0;
    std::vector<std::pair<int, std::string>> theUpdates;
};

} // namespace tarnwick
