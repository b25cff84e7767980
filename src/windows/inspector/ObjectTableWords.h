#pragma once

#include "ObjectRowsMaker.h"

#include <QString>

namespace tarnwick {

/// What the table of objects says beside its cells.

/// The words of its filter, a line each.
QString objectFilterHelp();
/// What a column usually holds, for its width.
QString columnSample(ObjectColumn column);
/// How many rows there are.
QString countText(const ObjectRows& rows);
/// What rows wait for, and what is found out while nobody waits: "%1" stands for a percentage.
/// @{
QString waitingText(ObjectRowsMaker::Step step);
QString learningText(ObjectRowsMaker::Step step);
/// @}

} // namespace tarnwick
