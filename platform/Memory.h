#pragma once
#include <cstddef>

namespace tessarine
{
/// Memory for a large block, in pages as large as the machine has, which makes it several times faster to
/// touch for the first time. Throws std::bad_alloc.
void* AllocateBlock(std::size_t bytes);

/// Gives back what AllocateBlock gave.
void FreeBlock(void* block) noexcept;

/// The alignment of every block: a cache line.
inline constexpr std::size_t kBlockAlignment = 64;
}
