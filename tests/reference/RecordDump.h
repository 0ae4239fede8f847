#pragma once
#include <string>

namespace tessarine
{
class MANBrepElementManager;

/// Every record of the stores with all its links by id and all its numbers bit for bit, a line a slot.
/// Two models are the same when their dumps are.
std::string DumpRecords(const MANBrepElementManager& manager);
}
