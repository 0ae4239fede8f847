#pragma once
#include "FaultPlan.h"

namespace tessarine
{
/// What every allocation of the test program asks.
FaultPlan& GetMemoryPlan();

/// While it lives, only that memory can fail which the program's own code asks for: none that a library asks for, and
/// none that the program asks for when a library calls it back.
class OwnMemoryOnly
{
public:
    OwnMemoryOnly();
    ~OwnMemoryOnly();
    OwnMemoryOnly(const OwnMemoryOnly&) = delete;
    OwnMemoryOnly& operator=(const OwnMemoryOnly&) = delete;
};
}
