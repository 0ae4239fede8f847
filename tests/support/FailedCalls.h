#pragma once
#include "FaultPlan.h"
#include <cerrno>
#include <cstddef>
#include <sys/types.h>

// What a call to the system for a file does where a plan lets it fail.
namespace tessarine
{
inline bool MustFailWith(FaultPlan& plan, int error)
{
    if (!plan.MustFail())
    {
        return false;
    }
    errno = error;
    return true;
}

/// A disk that is full takes a part first.
template <class TWrite>
ssize_t WriteOrFail(FaultPlan& plan, const TWrite& real, int descriptor, const void* bytes, std::size_t size)
{
    if (!plan.MustFail())
    {
        return real(descriptor, bytes, size);
    }
    static_cast<void>(real(descriptor, bytes, size / 2));
    errno = ENOSPC;
    return -1;
}

/// The descriptor is closed all the same.
template <class TClose>
int CloseOrFail(FaultPlan& plan, const TClose& real, int descriptor)
{
    const bool fails = plan.MustFail();
    const int result = real(descriptor);
    errno = fails ? EIO : errno;
    return fails ? -1 : result;
}
}
