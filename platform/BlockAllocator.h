#pragma once
#include "Memory.h"
#include <cstddef>
#include <limits>
#include <new>
#include <vector>

namespace tessarine
{
/// Lets a standard container take its memory in blocks (see Memory.h).
template <class T>
struct BlockAllocator
{
    using value_type = T;
    static_assert(alignof(T) <= kBlockAlignment);
    static constexpr std::size_t kBytesEach =
        sizeof(T); // NOLINT(bugprone-sizeof-expression): of a pointer, too

    BlockAllocator() = default;
    template <class TOther>
    BlockAllocator(const BlockAllocator<TOther>& /*other*/) noexcept // NOLINT(google-explicit-constructor)
    {
    }

    T* allocate(std::size_t count) // NOLINT(readability-identifier-naming): the standard's name
    {
        if (count > std::numeric_limits<std::size_t>::max() / 2 / kBytesEach)
        {
            throw std::bad_alloc();
        }
        return static_cast<T*>(AllocateBlock(count * kBytesEach));
    }
    void deallocate(T* block, std::size_t /*count*/) noexcept // NOLINT(readability-identifier-naming)
    {
        FreeBlock(block);
    }

    friend bool operator==(const BlockAllocator& /*a*/, const BlockAllocator& /*b*/) { return true; }
};

/// A list for what is looked up all over: large pages spare the machine most of the search for its addresses.
template <class T>
using BlockVector = std::vector<T, BlockAllocator<T>>;
}
