#pragma once

#include "EngineDocument.h"
#include "FileOutput.h"
#include "protocol/ObjectMessages.h"

#include <functional>

namespace tarnwick {

/// Brings what the stream of an object holds, as far as it can be read, into a file.
class StreamReader
{
public:
    using Progress = std::function<void(int done, int total)>; ///< in mebibytes, total 0

    /// @param descriptor borrowed, written from its position on.
    StreamReader(const EngineDocument& document, const StreamRequest& request, int descriptor,
        Progress progress);

    /// @returns FZ_ERROR_NONE whatever the stream is like; FZ_ERROR_MEMORY when memory or room for
    ///   the file ran out.
    int read(StreamResult& result);

private:
    /// Why the filters cannot be undone, as a sentence; empty when they can.
    std::string obstacle() const;
    fz_stream* open(EngineStreamForm form) const;
    void copy(StreamResult& result);
    void copyFrom(fz_stream* stream, StreamResult& result);
    bool isFlateAlone() const;
    bool staysPacked() const;
    void copyTail();
    void write(std::string_view bytes);

    const EngineDocument& theDocument;
    fz_context* theContext;
    StreamRequest theRequest;
    FileOutput theOutput;
    Progress theProgress;
};

} // namespace tarnwick
