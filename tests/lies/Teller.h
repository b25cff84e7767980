#pragma once

#include "protocol/EngineMessages.h"

#include <string>

namespace tarnwick {

/// A request as the engine gets it.
struct Question
{
    std::uint32_t number = 0;
    EngineRequest kind = EngineRequest::isOpen;
    std::string payload;
};

/// Answers for an engine: with the truth, which is a document of three pages with a line of text
/// each, or with the lie that it was made for.
class Teller
{
public:
    /// @param lie name of a lie; any other text for the truth alone. @param output descriptor that
    /// files are written to, -1 for none.
    Teller(std::string lie, int output);

    void take(const Question& question);
    /// The answer of an engine that does not lie.
    void tellTruth(const Question& question);

    void answer(const Question& question, EngineAnswer kind, std::string_view payload);
    template<typename Answer> void answer(const Question& question, const Answer& message)
    {
        answer(question, Answer::kind, packed(message));
    }
    /// The result of the request.
    template<typename Result> void done(const Question& question, const Result& result)
    {
        answer(question, EngineAnswer::isDone, packed(result));
    }
    /// A frame whose head may say anything.
    void send(const EngineFrame& head, std::string_view payload);
    /// Bytes as they are; ends the process when nobody reads them.
    void write(std::string_view bytes);
    int output() const { return theOutput; }

    static OpenedAnswer facts(int pages);

private:
    std::string theLie;
    int theOutput;
};

} // namespace tarnwick
