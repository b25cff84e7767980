#pragma once

#include <cstddef>

namespace tarnwick {

/// Lets large blocks of memory that come from the default memory resource (std::pmr) lie in large
/// pages, where the system has them. Lists of an analysis fill hundreds of megabytes, and bringing
/// those in by pages of 4 KB takes about as long as the scan that fills them.
///
/// To be called once, before the first of such lists is made; holds until the program's end.
void useLargePages();

/// The same for a block of memory from elsewhere that has just been allocated: a wish, which the
/// system may not grant. Blocks that are too small for it are left as they are.
void preferLargePages(void* block, std::size_t bytes);

} // namespace tarnwick
