#include "Password.h"

#include <cstdio>
#include <fstream>
#include <memory>

#include <termios.h>

namespace tarnwick {

namespace {

/// Turns the terminal's echo off while it lives.
class SilentTerminal
{
public:
    explicit SilentTerminal(int descriptor)
        : theDescriptor(descriptor)
        , isKnown(::tcgetattr(descriptor, &theOld) == 0)
    {
        termios silent = theOld;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        if (isKnown)
            ::tcsetattr(theDescriptor, TCSAFLUSH, &silent);
    }
    ~SilentTerminal()
    {
        if (isKnown)
            ::tcsetattr(theDescriptor, TCSAFLUSH, &theOld);
    }
    SilentTerminal(const SilentTerminal&) = delete;
    SilentTerminal& operator=(const SilentTerminal&) = delete;

private:
    int theDescriptor;
    termios theOld = {};
    bool isKnown;
};

void dropLineEnd(std::string& line)
{
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
        line.pop_back();
}

} // namespace

std::optional<std::string> passwordFromFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string line;
    if (!file.is_open() || (!std::getline(file, line) && file.bad()))
        return std::nullopt;
    dropLineEnd(line);
    return line;
}

std::optional<std::string> passwordFromTerminal(const std::string& prompt)
{
    const auto close = [](std::FILE* file) { std::fclose(file); };
    const std::unique_ptr<std::FILE, decltype(close)> terminal(
        std::fopen("/dev/tty", "r+e"), close);
    if (!terminal)
        return std::nullopt;
    std::fputs(prompt.c_str(), terminal.get());
    std::fflush(terminal.get());
    std::string line;
    bool isEnd = true;
    {
        const SilentTerminal silent(::fileno(terminal.get()));
        for (int c = std::fgetc(terminal.get()); c != EOF; c = std::fgetc(terminal.get())) {
            isEnd = false;
            if (c == '\n')
                break;
            line += static_cast<char>(c);
        }
    }
    std::fputs("\n", terminal.get());
    if (isEnd)
        return std::nullopt;
    dropLineEnd(line);
    return line;
}

} // namespace tarnwick
