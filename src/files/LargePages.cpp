#include "files/LargePages.h"

#include <sys/mman.h>

#include <cstddef>
#include <memory>
#include <memory_resource>

namespace tarnwick {

namespace {

/// Of every processor that Debian's 64-bit PC and ARM systems run on.
constexpr std::size_t largePage = std::size_t{2} << 20;

class LargePageResource : public std::pmr::memory_resource
{
private:
    static std::size_t aligned(std::size_t bytes, std::size_t alignment)
    {
        return bytes < largePage ? alignment : largePage;
    }

    void* do_allocate(std::size_t bytes, std::size_t alignment) override
    {
        void* block = std::pmr::new_delete_resource()->allocate(bytes, aligned(bytes, alignment));
        preferLargePages(block, bytes);
        return block;
    }

    void do_deallocate(void* block, std::size_t bytes, std::size_t alignment) override
    {
        std::pmr::new_delete_resource()->deallocate(block, bytes, aligned(bytes, alignment));
    }

    bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override
    {
        return this == &other;
    }
};

} // namespace

void useLargePages()
{
    // Never destroyed: lists may outlive everything else.
    static auto* const resource = new LargePageResource;
    std::pmr::set_default_resource(resource);
}

void preferLargePages(void* block, std::size_t bytes)
{
    // Whole pages alone: one that is not full would take memory that nobody uses.
    if (std::align(largePage, largePage, block, bytes))
        madvise(block, bytes / largePage * largePage, MADV_HUGEPAGE);
}

} // namespace tarnwick
