#pragma once
#include "IATool.h"

namespace tessarine
{
/// The tool of the start, which shall pick and select what is under the mouse. Picking comes with a later
/// version: until then it answers no event.
class IASelectTool : public IATool
{
};
}
