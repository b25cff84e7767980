#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwick {

/// Writes a file to a descriptor in large pieces and keeps count of the bytes.
class FileOutput
{
public:
    /// @param descriptor borrowed.
    explicit FileOutput(int descriptor)
        : theDescriptor(descriptor)
    {
    }

    void write(std::string_view bytes);
    /// Writes out what is kept back. @returns whether everything has been written.
    bool finish();
    /// Bytes handed to write() so far: the offset of the next one.
    std::uint64_t position() const { return thePosition; }
    /// False once the memory for the file has run out; further bytes go nowhere.
    bool isGood() const { return theIsGood; }

private:
    void writeOut(std::string_view bytes);

    int theDescriptor;
    std::string theBuffer;
    std::uint64_t thePosition = 0;
    bool theIsGood = true;
};

} // namespace tarnwick
