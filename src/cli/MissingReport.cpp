#include "MissingReport.h"

#include "Complaint.h"

#include <cstdio>
#include <limits>
#include <string>

namespace tarnwick {

namespace {

const char* reasonOf(PDFLoss loss)
{
    switch (loss) {
    case PDFLoss::isNone:
        break;
    case PDFLoss::isTimedOut:
        return "time limit";
    case PDFLoss::isEngineDead:
        return "engine ended";
    case PDFLoss::isOutOfMemory:
        return "memory limit";
    case PDFLoss::isDamaged:
    case PDFLoss::isDamagedInPart:
        return "damaged";
    case PDFLoss::isCut:
        return "too long";
    case PDFLoss::isNotRead:
        return "not read";
    }
    return "";
}

std::string jsonOf(const ExportContent& content)
{
    std::string json = "{\"missing\":[";
    const char* separator = "";
    for (const PDFLosses::Range& range : content.losses().ranges()) {
        json += std::string(separator) + "{\"first\":" + std::to_string(range.first + 1)
            + ",\"last\":" + std::to_string(range.last + 1) + ",\"reason\":\""
            + reasonOf(range.loss) + "\",\"partial\":" + (isPartial(range.loss) ? "true" : "false")
            + "}";
        separator = ",";
    }
    return json + "],\"lostObjects\":" + std::to_string(content.lostObjects()) + "}\n";
}

} // namespace

ExitStatus reportMissing(const ExportContent& content, const Arguments& arguments)
{
    if (arguments.json)
        std::fputs(jsonOf(content).c_str(), stderr);
    else
        for (const QString& sentence : content.missing(std::numeric_limits<int>::max()))
            complain(ExitStatus::isIncomplete, arguments.file, sentence.toStdString());
    return content.isWhole() ? ExitStatus::isDone : ExitStatus::isIncomplete;
}

} // namespace tarnwick
