#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tarnwick {

/// Appends saves to a file (ISO 32000-2, 7.5.6), each with exactly the objects and rows that it is
/// told, so that what a save has changed is known.
class SavedFile
{
public:
    enum class Form
    {
        isTable,
        isStream, ///< the cross-reference stream takes the number 90 and no row
        isHybrid, ///< a table that hides packed objects as free, and a stream that has them
    };

    explicit SavedFile(std::string start);

    /// An object of the coming save.
    SavedFile& object(int number, const std::string& body, int generation = 0);
    /// Objects in an object stream of the coming save.
    SavedFile& packed(int container, const std::vector<std::pair<int, std::string>>& objects);
    SavedFile& freed(int number, int generation = 1);
    /// A row of any kind: 0 free, 1 plain, 2 packed.
    SavedFile& row(int number, int use, std::size_t place, int detail = 0);
    SavedFile& raw(const std::string& bytes);
    /// Ends the save. @param prev where it goes on from instead of the last startxref; negative for
    /// no Prev at all.
    SavedFile& save(Form form = Form::isTable, std::optional<std::int64_t> prev = {},
        const std::string& trailer = {});

    const std::string& bytes() const { return theBytes; }
    std::size_t startxref() const { return theStart; } ///< the last

private:
    struct Row
    {
        int number = 0;
        int use = 0;
        std::size_t place = 0;
        int detail = 0;
    };

    std::string streamObject(const std::vector<Row>& rows, const std::string& entries) const;
    std::string table(const std::vector<Row>& rows) const;

    std::string theBytes;
    std::size_t theStart = 0;
    std::vector<Row> theRows;
};

} // namespace tarnwick
