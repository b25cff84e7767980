#pragma once

#include <string_view>

namespace tarnwick {

/// Something that the user has the program write into.
///
/// Operations return 0, an errno of what failed, or one of the values below; after a failure only
/// destruction makes sense. errorText() says what they mean. No opened file is ever written
/// (OpenedFiles). Any one thread at a time.
class OutputFile
{
public:
    /// The name leads to a file that the program has opened.
    static constexpr int isOpenedFile = -1;
    /// Something stands there that is neither a file nor a folder.
    static constexpr int isNoRegularFile = -2;
    /// A link stands there that leads to no file.
    static constexpr int isDanglingLink = -3;

    virtual ~OutputFile() = default;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Sees that there can be written. Called first.
    virtual int open() = 0;
    virtual int append(std::string_view bytes) = 0;
    /// Nothing more is to come. Called last.
    virtual int commit() = 0;

protected:
    OutputFile() = default;
};

} // namespace tarnwick
