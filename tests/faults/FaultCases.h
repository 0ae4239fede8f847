#pragma once
#include "ToolEvent.h"
#include <optional>
#include <string>
#include <vector>

namespace tessarine
{
/// What may stay of an operation that failed.
enum class FaultOutcome
{
    Nothing,  ///< it passes the boundary: the whole dump is as before
    WholeStep ///< an event of the view: its records are as before, or as behind the whole step
};

/// More than a short run passes.
constexpr int kAllPlaces = 1000;

/// An operation in a state of its own, to be run with faults.
struct FaultCase
{
    std::string name;
    std::string setup;     ///< operations that lead to the state, as in a script
    std::string operation; ///< the one that is made to fail
    int most = kAllPlaces; ///< of a kind and mode, about how many are tried: a long run has fewer
    FaultOutcome outcome = FaultOutcome::Nothing;
    std::string folder = {};  ///< where it writes; empty where it writes nothing
    bool doesWithout = false; ///< without some of the files that it reads it goes on, and says so
    std::optional<ToolEvent> event =
        {}; ///< what is sent to the view in place of the operation, which names it
};

/// Every operation of the batch tool on a small model, some on a larger one, and every event of every tool.
const std::vector<FaultCase>& GetFaultCases();

/// Every number of the menus that somebody answers, over a small model with a selection.
std::vector<FaultCase> MakeMenuCases();
}
