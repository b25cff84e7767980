#pragma once

#include "files/OutputFile.h"

#include <memory>
#include <string>

namespace tarnwick {

/// Something that is written into as it is, because nothing can be put in its place: a device, a
/// pipe, or what this process has open already. What has been written when it fails stays.
class StraightFile : public OutputFile
{
public:
    /// @param path that leads to a device, a pipe or an open descriptor ("/dev/stdout").
    explicit StraightFile(std::string path);
    /// @param descriptor borrowed.
    explicit StraightFile(int descriptor);
    ~StraightFile() override;

    /// Opening a named pipe waits for somebody to read from it.
    int open() override;
    int append(std::string_view bytes) override;
    int commit() override;

private:
    int openPath();

    std::string thePath;
    int theDescriptor = -1;
    bool ownsDescriptor = false;
};

/// The way to write into what a path leads to: straight into devices, pipes and open descriptors,
/// as a WholeFile else.
std::unique_ptr<OutputFile> outputFileFor(const std::string& path);

} // namespace tarnwick
