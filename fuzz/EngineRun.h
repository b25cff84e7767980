#pragma once

#include "protocol/EngineMessages.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// The engine within this process, without its cage: its own reading of requests and writing of
/// answers, from and to memory in place of pipes.
class EngineRun
{
public:
    struct Answer
    {
        EngineFrame frame;
        std::string payload;
    };

    /// Serves requests until they end.
    /// @param file the document's bytes. @param requests frames as the program sends them, or not.
    EngineRun(std::string_view file, std::string_view requests);

    /// Of requests and progress, in order.
    const std::vector<Answer>& answers() const { return theAnswers; }
    /// What was written for a flattened or printed document.
    const std::string& written() const { return theWritten; }

private:
    std::vector<Answer> theAnswers;
    std::string theWritten;
};

} // namespace tarnwick
