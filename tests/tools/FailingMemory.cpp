#include "FailingMemory.h"
#include "OwnCode.h"
#include <cstdlib>
#include <new>

namespace tessarine
{
namespace
{
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kAreLeaksErrors = true;
#else
constexpr bool kAreLeaksErrors = false;
#endif

FaultPlan g_MemoryPlan;
bool g_bOwnOnly = false;
bool g_bLooking = false; // which may ask for memory itself

bool MayFail(const void* asker)
{
    if (g_bLooking)
    {
        return false;
    }
    g_bLooking = true;
    const bool wouldLeak = kAreLeaksErrors && IsForgetfulCode(asker);
    const bool mayFail = !wouldLeak && (!g_bOwnOnly || IsOwnCodeRunning());
    g_bLooking = false;
    return mayFail;
}

void* Allocate(std::size_t size, std::size_t alignment, const void* asker)
{
    if (g_MemoryPlan.IsArmed() && MayFail(asker) && g_MemoryPlan.MustFail())
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

void* AllocateOrNull(std::size_t size, const void* asker) noexcept
{
    try
    {
        return Allocate(size, __STDCPP_DEFAULT_NEW_ALIGNMENT__, asker);
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}
}

FaultPlan& GetMemoryPlan()
{
    return g_MemoryPlan;
}

OwnMemoryOnly::OwnMemoryOnly()
{
    g_bOwnOnly = true;
}

OwnMemoryOnly::~OwnMemoryOnly()
{
    g_bOwnOnly = false;
}
}

// The allocation of the whole test program.

void* operator new(std::size_t size)
{
    return tessarine::Allocate(size, __STDCPP_DEFAULT_NEW_ALIGNMENT__, __builtin_return_address(0));
}

void* operator new[](std::size_t size)
{
    return tessarine::Allocate(size, __STDCPP_DEFAULT_NEW_ALIGNMENT__, __builtin_return_address(0));
}

void* operator new(std::size_t size, std::align_val_t alignment)
{
    return tessarine::Allocate(size, static_cast<std::size_t>(alignment), __builtin_return_address(0));
}

// For the libraries that ask like this: what they get is freed by the operators below.
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    return tessarine::AllocateOrNull(size, __builtin_return_address(0));
}

void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    return tessarine::AllocateOrNull(size, __builtin_return_address(0));
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
