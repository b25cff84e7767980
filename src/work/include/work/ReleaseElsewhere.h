#pragma once

#include "work/WorkThreads.h"

#include <QtGlobal>

#include <type_traits>
#include <utility>

namespace tarnwick {

/// Has a list freed by a thread, when it is the last to hold its items: freeing millions of them
/// takes as long as making them did. Little lists are freed at once.
template<class List> void releaseElsewhere(List&& list)
{
    static_assert(std::is_rvalue_reference_v<List&&>);
    constexpr qsizetype longestFreedAtOnce = 10'000;
    List held = std::move(list);
    if (held.size() > longestFreedAtOnce)
        WorkThreads::run([held = std::move(held)] {});
}

} // namespace tarnwick
