#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

/// Exit statuses of the companion.
enum class ExitStatus
{
    isDone = 0,
    isFailed = 1, ///< the file cannot be read, or the export failed
    isWrongUse = 2,
    isDifferent = 3, ///< what was compared differs
    isIncomplete = 4, ///< done, but something is missing from it; standard error says what
};

/// The words of a command line, taken apart.
struct Arguments
{
    std::string command; ///< one of those that --help names
    std::string file; ///< "-" for standard input
    std::optional<std::string> otherFile; ///< that it is compared with
    std::optional<std::int64_t> fromVersion; ///< --from V
    std::optional<std::int64_t> toVersion; ///< --to V
    bool objects = false; ///< --objects
    bool json = false; ///< --json
    bool wantsHelp = false; ///< --help or -h
    bool wantsVersion = false; ///< --version
    std::optional<std::int64_t> objNo; ///< of the commands that take an object
    std::optional<std::int64_t> objGen;
    std::optional<std::int64_t> atVersion; ///< --at-version V
    bool raw = false; ///< --raw
    bool decoded = false; ///< --decoded
    bool hashes = false; ///< --hashes
    std::optional<std::string> exportFolder; ///< --export FOLDER
    std::optional<std::string> output; ///< -o OUT or --output OUT
    std::optional<std::string> passwordFile; ///< --password-file FILE
};

/// Takes the words behind the program's name apart. Options may stand anywhere; "--" ends them.
/// @param[out] problem what is wrong with them, as a sentence; untouched otherwise.
/// @returns nothing when they make no command.
std::optional<Arguments> parseArguments(
    const std::vector<std::string>& words, std::string& problem);

} // namespace tarnwick
