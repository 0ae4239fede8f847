#pragma once
#include <cstddef>

namespace tessarine
{
/// Memory for a large block, in pages as large as the machine has, which makes it several times faster to
/// touch for the first time. Throws std::bad_alloc.
void* AllocateBlock(std::size_t bytes);

/// Gives back what AllocateBlock gave.
void FreeBlock(void* block) noexcept;

/// Lets freed memory stay with the process, up to a gigabyte, for the next operation: a page that comes fresh
/// from the system costs more than the work that is done on it. For the start of a program.
void KeepFreedMemory() noexcept;

/// The alignment of every block: a cache line.
inline constexpr std::size_t kBlockAlignment = 64;
}
