#include "FailingMemory.h"
#include <cstdlib>
#include <new>

namespace tessarine
{
namespace
{
struct Plan
{
    bool armed = false;
    bool failed = false;
    bool goesOn = false;
    long spared = 0;
};

Plan g_Plan;

bool MustFail()
{
    if (!g_Plan.armed)
    {
        return false;
    }
    if (g_Plan.failed)
    {
        return g_Plan.goesOn;
    }
    g_Plan.failed = g_Plan.spared-- == 0;
    return g_Plan.failed;
}

void* Allocate(std::size_t size, std::size_t alignment)
{
    if (MustFail())
    {
        throw std::bad_alloc();
    }
    const std::size_t whole = (size + alignment - 1) / alignment * alignment;
    void* bytes = std::aligned_alloc(alignment, whole > 0 ? whole : alignment);
    if (bytes == nullptr)
    {
        throw std::bad_alloc();
    }
    return bytes;
}
}

FailingMemory::FailingMemory(long spared, Mode mode)
{
    g_Plan = {true, false, mode == Mode::FromThenOn, spared};
}

FailingMemory::~FailingMemory()
{
    g_Plan.armed = false;
}

bool FailingMemory::HasFailed()
{
    return g_Plan.failed;
}
}

// The allocation of the whole test program.

void* operator new(std::size_t size)
{
    return tessarine::Allocate(size, __STDCPP_DEFAULT_NEW_ALIGNMENT__);
}

void* operator new[](std::size_t size)
{
    return tessarine::Allocate(size, __STDCPP_DEFAULT_NEW_ALIGNMENT__);
}

void* operator new(std::size_t size, std::align_val_t alignment)
{
    return tessarine::Allocate(size, static_cast<std::size_t>(alignment));
}

// For the libraries that ask like this: what they get is freed by the operators below.
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    return tessarine::MustFail() ? nullptr : std::malloc(size);
}

void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    return tessarine::MustFail() ? nullptr : std::malloc(size);
}

void operator delete(void* bytes) noexcept
{
    std::free(bytes);
}

void operator delete[](void* bytes) noexcept
{
    std::free(bytes);
}

void operator delete(void* bytes, std::size_t /*size*/) noexcept
{
    std::free(bytes);
}

void operator delete[](void* bytes, std::size_t /*size*/) noexcept
{
    std::free(bytes);
}

void operator delete(void* bytes, std::align_val_t /*alignment*/) noexcept
{
    std::free(bytes);
}

void operator delete(void* bytes, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept
{
    std::free(bytes);
}
