#pragma once

#include "Shapes.h"

namespace tarnwick {

/// Documents that a viewer can open, page after page.
namespace documents {

/// A manual: per page a heading, two dozen short lines and a drawing.
void writeManual(std::size_t pages, const shapes::Sink& sink);

/// A book: pages full of small text.
void writeBook(std::size_t pages, const shapes::Sink& sink);

} // namespace documents

} // namespace tarnwick
