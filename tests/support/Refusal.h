#pragma once
#include "Failure.h"
#include "File.h"
#include <string>

namespace tessarine
{
/// What `action` tells its user when it fails by a Failure or a FileError; empty when it does not fail.
template <class TAction>
std::string GetRefusal(TAction action)
{
    try
    {
        action();
    }
    catch (const Failure& failure)
    {
        return failure.GetMessage();
    }
    catch (const FileError& error)
    {
        return error.what();
    }
    return {};
}
}
