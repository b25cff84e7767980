#include "Arguments.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <system_error>
#include <utility>

namespace tarnwick {

namespace {

/// What a command takes besides its file, as bits.
enum Taken : unsigned
{
    json = 1u << 0,
    exportFolder = 1u << 1,
    output = 1u << 2, ///< and needs it
    object = 1u << 3, ///< an object's number, which it needs
    generation = 1u << 4,
    oneVersion = 1u << 5, ///< --at-version, --raw, --decoded
    hashes = 1u << 6,
    password = 1u << 7, ///< --password-file
    otherFile = 1u << 8, ///< may have another file; --from, --to, --objects
};

struct Command
{
    std::string_view name;
    unsigned takes = 0;
};

constexpr std::array commands{
    Command{"listing", json},
    Command{"objects", json},
    Command{"summary", 0},
    Command{"versions", json | exportFolder | hashes},
    Command{"object", json | object | generation | oneVersion},
    Command{"uses", json | object},
    Command{"tree", json},
    Command{"check", json | password},
    Command{"compare", json | otherFile | password},
    Command{"flat", json | output | password},
    Command{"text", json | output | password},
    Command{"rtf", json | output | password},
};

/// A number that a saved version, an object or a generation can have.
std::optional<std::int64_t> countingNumber(const std::string& word)
{
    std::int64_t number = 0;
    const char* end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, number);
    if (error != std::errc() || stop != end || number < 0)
        return std::nullopt;
    return number;
}

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
        const bool isOption = !isBehindOptions && word.size() > 1 && word.starts_with('-');
        return isOption ? takeOption(word) : takeOperand(word);
    }

    bool takeOption(const std::string& word)
    {
        if (word == "--")
            isBehindOptions = true;
        else if (word == "--json")
            theArguments.json = true;
        else if (word == "--raw")
            theArguments.raw = true;
        else if (word == "--decoded")
            theArguments.decoded = true;
        else if (word == "--objects")
            theArguments.objects = true;
        else if (word == "--from")
            return takeNumber(word, theArguments.fromVersion);
        else if (word == "--to")
            return takeNumber(word, theArguments.toVersion);
        else if (word == "--hashes")
            theArguments.hashes = true;
        else if (word == "--at-version")
            return takeNumber(word, theArguments.atVersion);
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

    bool takeNumber(const std::string& option, std::optional<std::int64_t>& value)
    {
        std::optional<std::string> word;
        if (!takeValue(option, word))
            return false;
        value = countingNumber(*word);
        return value || fail(option + " needs a number, not " + *word);
    }

    bool takeOperand(const std::string& word)
    {
        theOperands.push_back(word);
        return true;
    }

    bool check()
    {
        if (theOperands.empty())
            return fail("no command");
        theArguments.command = theOperands[0];
        const auto command = std::find_if(commands.begin(), commands.end(),
            [this](const Command& c) { return c.name == theArguments.command; });
        if (command == commands.end())
            return fail("unknown command " + theArguments.command);
        if (theOperands.size() < 2)
            return fail("no file");
        theArguments.file = theOperands[1];
        if ((command->takes & Taken::otherFile) != 0 && theOperands.size() > 2) {
            theArguments.otherFile = theOperands[2];
            theOperands.erase(theOperands.begin() + 2);
            if (theArguments.file == "-" && *theArguments.otherFile == "-")
                return fail("only one of the files can come from standard input");
        }
        return checkOptions(command->takes) && takeObject(command->takes);
    }

    bool checkOptions(unsigned takes)
    {
        const bool writes = (takes & Taken::output) != 0;
        const bool compares = (takes & Taken::otherFile) != 0;
        const std::array<std::pair<bool, std::string>, 10> refused{{
            {theArguments.objects && !compares, "--objects"},
            {theArguments.fromVersion && !compares, "--from"},
            {theArguments.toVersion && !compares, "--to"},
            {theArguments.json && (takes & Taken::json) == 0, "--json"},
            {theArguments.exportFolder && (takes & Taken::exportFolder) == 0, "--export"},
            {theArguments.hashes && (takes & Taken::hashes) == 0, "--hashes"},
            {theArguments.passwordFile && (takes & Taken::password) == 0 && !theArguments.decoded,
                "--password-file"},
            {theArguments.raw && (takes & Taken::oneVersion) == 0, "--raw"},
            {theArguments.decoded && (takes & Taken::oneVersion) == 0, "--decoded"},
            {theArguments.atVersion && (takes & Taken::oneVersion) == 0, "--at-version"},
        }};
        for (const auto& [isRefused, option] : refused) {
            if (isRefused)
                return fail(theArguments.command + " has no " + option);
        }
        if (theArguments.output.has_value() != writes)
            return fail(theArguments.command + (writes ? " needs -o OUT" : " has no -o"));
        if (theArguments.raw && theArguments.json)
            return fail("--raw and --json exclude each other");
        if (theArguments.hashes && theArguments.json)
            return fail("--hashes and --json exclude each other");
        if (theArguments.decoded
            && (theArguments.raw || theArguments.json || theArguments.atVersion))
            return fail("--decoded stands alone: it is the object that readers use");
        return true;
    }

    /// The operands behind the file.
    bool takeObject(unsigned takes)
    {
        const std::size_t numbers = ((takes & Taken::object) != 0 ? 1u : 0u)
            + ((takes & Taken::generation) != 0 ? 1u : 0u);
        if (theOperands.size() > 2 + numbers)
            return fail(numbers == 0 ? "more than one file" : "too many numbers");
        for (std::size_t index = 2; index < theOperands.size(); ++index) {
            const std::optional<std::int64_t> number = countingNumber(theOperands[index]);
            if (!number)
                return fail("this is no object number: " + theOperands[index]);
            (index == 2 ? theArguments.objNo : theArguments.objGen) = number;
        }
        return numbers == 0 || theArguments.objNo || fail("no object number");
    }

    const std::vector<std::string>& theWords;
    std::string& theProblem;
    Arguments theArguments;
    std::size_t theNext = 0;
    std::vector<std::string> theOperands;
    bool isBehindOptions = false;
};

} // namespace

std::optional<Arguments> parseArguments(const std::vector<std::string>& words, std::string& problem)
{
    return Parser(words, problem).parse();
}

} // namespace tarnwick
