#include "IODatasetUnitizing.h"
#include "IODatasetText.h"

namespace tessarine
{
namespace
{
int ReadHalfExtent(IODatasetText& text, const char* meaning)
{
    const int extent = text.ReadDecimal(meaning);
    if (extent < 1)
    {
        text.Refuse(std::string(meaning) + " is " + std::to_string(extent) + "; it must be 1 at least");
    }
    return extent;
}
}

IODatasetUnitizing ReadUnitizing(const std::string& name)
{
    IODatasetText text(name);
    return ReadUnitizing(text);
}

IODatasetUnitizing ReadUnitizing(IODatasetText& text)
{
    IODatasetUnitizing unitizing;
    for (float* coordinate :
         {&unitizing.m_UnitizeCenter.x, &unitizing.m_UnitizeCenter.y, &unitizing.m_UnitizeCenter.z})
    {
        *coordinate = text.ReadFloat("the centre");
    }
    unitizing.m_fUnitizeScale = text.ReadFloat("the scale");
    if (unitizing.m_fUnitizeScale == 0.0F)
    {
        text.Refuse("the scale is 0; it is 2 over the longest side of the model, for example");
    }
    unitizing.m_strFile = text.GetName();
    unitizing.m_nScaleLine = text.GetLine();
    unitizing.m_nHalfWidth = ReadHalfExtent(text, "half the width of the image plane");
    unitizing.m_nHalfHeight = ReadHalfExtent(text, "half the height of the image plane");
    return unitizing;
}
}
