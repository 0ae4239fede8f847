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
}
