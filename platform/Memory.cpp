#include "Memory.h"
#include <cstdlib>
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
}

void* AllocateBlock(std::size_t bytes)
{
    const bool isLarge = bytes >= 2 * kLargePage;
    const std::size_t alignment = isLarge ? kLargePage : kBlockAlignment;
    const std::size_t size = RoundUp(bytes, kBlockAlignment);
    void* pBlock = std::aligned_alloc(alignment, RoundUp(size, alignment));
    if (pBlock == nullptr)
    {
        throw std::bad_alloc();
    }
    if (isLarge)
    {
        // Only whole large pages, so that the block takes no more memory than it asked for. Being refused
        // does no harm.
        static_cast<void>(madvise(pBlock, size / kLargePage * kLargePage, MADV_HUGEPAGE));
    }
    return pBlock;
}

void FreeBlock(void* block) noexcept
{
    std::free(block);
}

void KeepFreedMemory() noexcept
{
    constexpr int kMostKept = 1 << 30;
    mallopt(M_TRIM_THRESHOLD, kMostKept);
    mallopt(M_MMAP_THRESHOLD, kMostKept); // what is mapped by itself goes back to the system at once
}
}
