#pragma once

#include "analysis/ColourRole.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace tarnwick {

/// How pieces of a styled text are written.
enum class PieceFormat
{
    isPlain, ///< UTF-8, no colours
    isColoured, ///< for a terminal: colours, and control characters made visible
    isJson, ///< one JSON object a line for every piece, ASCII only
};

/// Writes pieces to a stream, buffered.
class PiecePrinter
{
public:
    /// @param output borrowed; isColoured is meant for terminals: a hostile file could send them
    ///   escape sequences otherwise.
    PiecePrinter(std::FILE* output, PieceFormat format);

    void print(ColourRole role, std::u16string_view text);

    /// Writes what is left. @returns false when something could not be written.
    bool finish();

private:
    void printPlain(std::u16string_view text);
    void printColoured(ColourRole role, std::u16string_view text);
    void printJson(ColourRole role, std::u16string_view text);
    void flush();

    std::FILE* theOutput;
    PieceFormat theFormat;
    std::string theBuffer;
    bool hasFailed = false;
};

} // namespace tarnwick
