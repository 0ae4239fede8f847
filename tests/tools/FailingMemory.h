#pragma once
#include "FaultPlan.h"

namespace tessarine
{
/// While it lives, one allocation fails: the one before which `spared` others succeed. Or that and all after
/// it.
class FailingMemory
{
public:
    enum class Mode
    {
        Once,
        FromThenOn
    };

    FailingMemory(long spared, Mode mode);
    ~FailingMemory();
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;

    /// Whether an allocation has failed.
    static bool HasFailed();

    /// For what asks for memory by other ways than operator new.
    static FaultPlan& GetPlan();
};

/// While it lives, only that memory can fail which the program's own code asks for: none that a library asks for, be it
/// in a thread of its own, and none that the program asks for when a library calls it back.
class OwnMemoryOnly
{
public:
    OwnMemoryOnly();
    ~OwnMemoryOnly();
    OwnMemoryOnly(const OwnMemoryOnly&) = delete;
    OwnMemoryOnly& operator=(const OwnMemoryOnly&) = delete;
};
}
