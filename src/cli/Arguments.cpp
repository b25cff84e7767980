#include "Arguments.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tarnwick {

namespace {

/// A command and the options that it takes besides its file.
struct Command
{
    std::string_view name;
    bool json;
    bool exportFolder;
    bool output; ///< and needs it
};

constexpr std::array commands{
    Command{"listing", true, false, false},
    Command{"objects", true, false, false},
    Command{"summary", false, false, false},
    Command{"versions", true, true, false},
    Command{"flat", true, false, true},
    Command{"text", true, false, true},
    Command{"rtf", true, false, true},
};

/// Goes through the words, putting each where it belongs.
class Parser
{
public:
    Parser(const std::vector<std::string>& words, std::string& problem)
        : theWords(words)
        , theProblem(problem)
    {
    }

    std::optional<Arguments> parse()
    {
        for (; theNext < theWords.size(); ++theNext) {
            if (!takeWord(theWords[theNext]))
                return std::nullopt;
        }
        if (theArguments.wantsHelp || theArguments.wantsVersion || check())
            return theArguments;
        return std::nullopt;
    }

private:
    bool fail(const std::string& problem)
    {
        theProblem = problem;
        return false;
    }

    bool takeWord(const std::string& word)
    {
        const bool isOption = !theOptionsAreOver && word.size() > 1 && word.starts_with('-');
        return isOption ? takeOption(word) : takeOperand(word);
    }

    bool takeOption(const std::string& word)
    {
        if (word == "--")
            theOptionsAreOver = true;
        else if (word == "--json")
            theArguments.json = true;
        else if (word == "--help" || word == "-h")
            theArguments.wantsHelp = true;
        else if (word == "--version")
            theArguments.wantsVersion = true;
        else if (word == "--export")
            return takeValue(word, theArguments.exportFolder);
        else if (word == "--output" || word == "-o")
            return takeValue(word, theArguments.output);
        else if (word == "--password-file")
            return takeValue(word, theArguments.passwordFile);
        else
            return fail("unknown option " + word);
        return true;
    }

    bool takeValue(const std::string& option, std::optional<std::string>& value)
    {
        if (theNext + 1 == theWords.size())
            return fail(option + " needs a value");
        value = theWords[++theNext];
        return true;
    }

    bool takeOperand(const std::string& word)
    {
        if (theOperands == 0)
            theArguments.command = word;
        else if (theOperands == 1)
            theArguments.file = word;
        else
            return fail("more than one file");
        ++theOperands;
        return true;
    }

    bool check()
    {
        if (theOperands == 0)
            return fail("no command");
        const auto command = std::find_if(commands.begin(), commands.end(),
            [this](const Command& c) { return c.name == theArguments.command; });
        if (command == commands.end())
            return fail("unknown command " + theArguments.command);
        if (theOperands < 2)
            return fail("no file");
        if (theArguments.json && !command->json)
            return fail(theArguments.command + " has no --json");
        if (theArguments.exportFolder && !command->exportFolder)
            return fail(theArguments.command + " has no --export");
        if (theArguments.output.has_value() != command->output)
            return fail(theArguments.command + (command->output ? " needs -o OUT" : " has no -o"));
        if (theArguments.passwordFile && !command->output)
            return fail(theArguments.command + " has no --password-file");
        return true;
    }

    const std::vector<std::string>& theWords;
    std::string& theProblem;
    Arguments theArguments;
    std::size_t theNext = 0;
    std::size_t theOperands = 0;
    bool theOptionsAreOver = false;
};

} // namespace

std::optional<Arguments> parseArguments(const std::vector<std::string>& words, std::string& problem)
{
    return Parser(words, problem).parse();
}

} // namespace tarnwick
