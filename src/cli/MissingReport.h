#pragma once

#include "Arguments.h"
#include "export/ExportContent.h"

namespace tarnwick {

/// Says on standard error what of the document is not in what was written: sentences, or with
/// --json one object such as
/// {"missing":[{"first":2,"last":2,"reason":"time limit","partial":false}],"lostObjects":0}
/// with pages counted from 1, which also comes when nothing is missing.
/// @returns isDone or isIncomplete.
ExitStatus reportMissing(const ExportContent& content, const Arguments& arguments);

} // namespace tarnwick
