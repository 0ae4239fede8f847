#include "Memory.h"
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <malloc.h>
#include <new>
#include <sys/mman.h>

namespace tessarine
{
namespace
{
constexpr std::size_t kLargePage = std::size_t{2} << 20U;

std::size_t RoundUp(std::size_t bytes, std::size_t unit)
{
    return (bytes + unit - 1) / unit * unit;
}

/// Where the memory around a block starts, kept right in front of the block: it starts at least a pointer before it.
void*& StartOf(void* block)
{
    return static_cast<void**>(block)[-1];
}
}

/// The C library's own aligned allocation leaves a hole beside each block, into which the next one does not fit again.
void* AllocateBlock(std::size_t bytes)
{
    const bool isLarge = bytes >= 2 * kLargePage;
    const std::size_t alignment = isLarge ? kLargePage : kBlockAlignment;
    if (bytes > std::numeric_limits<std::size_t>::max() - alignment)
    {
        throw std::bad_alloc();
    }
    void* const pStart = std::malloc(bytes + alignment);
    if (pStart == nullptr)
    {
        throw std::bad_alloc();
    }
    const auto start = reinterpret_cast<std::uintptr_t>(pStart);
    auto* const pBlock = static_cast<std::byte*>(pStart) + (RoundUp(start + 1, alignment) - start);
    StartOf(pBlock) = pStart;
    if (isLarge)
    {
        // Only whole large pages, so that the block takes no more memory than it asked for. Being refused
        // does no harm.
        static_cast<void>(madvise(pBlock, bytes / kLargePage * kLargePage, MADV_HUGEPAGE));
    }
    return pBlock;
}

void FreeBlock(void* block) noexcept
{
    std::free(StartOf(block));
}

void KeepFreedMemory() noexcept
{
    constexpr int kMostKept = 1 << 30;
    mallopt(M_TRIM_THRESHOLD, kMostKept);
    mallopt(M_MMAP_THRESHOLD, kMostKept); // what is mapped by itself goes back to the system at once
}
}
