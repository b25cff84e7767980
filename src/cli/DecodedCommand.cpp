#include "DecodedCommand.h"

#include "Complaint.h"
#include "EngineSession.h"
#include "files/ErrorText.h"
#include "files/OutputFile.h"
#include "pdf/FailureText.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// What a stream unpacks to, from the open document to the output.
class StreamDecoding : public EngineSession
{
public:
    using EngineSession::EngineSession;

private:
    void take() override
    {
        constexpr std::int64_t most = std::numeric_limits<int>::max();
        theRequest = document().requestStream(static_cast<int>(std::min(*arguments().objNo, most)),
            PDFStreamForm::isDecoded, largestStream, this);
        connect(theRequest, &PDFRequest::finished, this, &StreamDecoding::write);
    }

    void write()
    {
        const std::string object
            = arguments().file + ": object " + std::to_string(*arguments().objNo);
        if (!theRequest->succeeded())
            return fail(object, failureReason(*theRequest));
        const PDFStream& stream = theRequest->stream();
        if (stream.end == PDFStreamEnd::isNone)
            return fail(object, u"It has no stream"_s);
        if (stream.end == PDFStreamEnd::isUnknown)
            return fail(object, stream.remark);
        const std::unique_ptr<OutputFile> file = output();
        int error = file->open();
        if (error == 0)
            error = file->append(stream.bytes.view());
        if (error == 0)
            error = file->commit();
        if (error != 0)
            return fail(shownOutput(), QString::fromStdString(errorText(error)));
        end(reportEnd(object, stream));
    }

    static ExitStatus reportEnd(const std::string& object, const PDFStream& stream)
    {
        if (stream.end == PDFStreamEnd::isWhole && !stream.remark.isEmpty())
            complain(ExitStatus::isDone, object, stream.remark.toStdString());
        if (stream.end == PDFStreamEnd::isWhole)
            return ExitStatus::isDone;
        const bool isDamaged = stream.end == PDFStreamEnd::isDamaged;
        const bool isLost = stream.end == PDFStreamEnd::isLost;
        const QString why
            = isLost ? failureReason(stream.failure, stream.timeLimit) : stream.remark;
        std::fprintf(stderr, "tarnwick-inspect: %s: its stream %s %zu bytes%s%s\n", object.c_str(),
            isDamaged ? "is damaged after" : "goes on behind", stream.bytes.size(),
            why.isEmpty() ? "" : ": ", qPrintable(why));
        return ExitStatus::isIncomplete;
    }

    PDFStreamRequest* theRequest = nullptr;
};

} // namespace

ExitStatus decodedCommand(const Arguments& arguments)
{
    return runSession(arguments, [&arguments](const FileBytes& bytes) {
        return std::make_unique<StreamDecoding>(arguments, bytes);
    });
}

} // namespace tarnwick
