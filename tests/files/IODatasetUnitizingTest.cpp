#include "IODatasetUnitizing.h"
#include "IODatasetText.h"
#include "Refusal.h"
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
std::string RefuseUnitizing(const std::string& content)
{
    return GetRefusal(
        [&content]
        {
            IODatasetText text("unitize.dat", content);
            ReadUnitizing(text);
        });
}

TEST(IODatasetUnitizing, ReadsCentreScaleAndHalfExtents)
{
    IODatasetText text("unitize.dat", "0.1 -0.2 0.3 1.5 \n2 3 \n");
    const IODatasetUnitizing unitizing = ReadUnitizing(text);
    EXPECT_EQ(unitizing.m_UnitizeCenter.x, 0.1F);
    EXPECT_EQ(unitizing.m_UnitizeCenter.y, -0.2F);
    EXPECT_EQ(unitizing.m_UnitizeCenter.z, 0.3F);
    EXPECT_EQ(unitizing.m_fUnitizeScale, 1.5F);
    EXPECT_EQ(unitizing.m_nHalfWidth, 2);
    EXPECT_EQ(unitizing.m_nHalfHeight, 3);
    EXPECT_EQ(unitizing.m_strFile, "unitize.dat");
    EXPECT_EQ(unitizing.m_nScaleLine, 1);
}

TEST(IODatasetUnitizing, RefusesAScaleOfZero)
{
    EXPECT_EQ(RefuseUnitizing("0.5 0 0\n0.0\n2 2\n"),
              "unitize.dat, line 2: the scale is 0; it is 2 over the longest side of the model, for example");
}

TEST(IODatasetUnitizing, RefusesAPlaneWithoutExtent)
{
    EXPECT_EQ(RefuseUnitizing("0 0 0 1\n0 2\n"),
              "unitize.dat, line 2: half the width of the image plane is 0; it must be 1 at least");
    EXPECT_EQ(RefuseUnitizing("0 0 0 1\n2 0\n"),
              "unitize.dat, line 2: half the height of the image plane is 0; it must be 1 at least");
}

TEST(IODatasetUnitizing, RefusesWhatIsMissingOrNotFinite)
{
    EXPECT_EQ(RefuseUnitizing("0 0 0\n"), "unitize.dat, line 2: the file ends before the scale");
    EXPECT_EQ(RefuseUnitizing("0 inf 0 1\n2 2\n"), "unitize.dat, line 1: the centre is not finite");
    EXPECT_EQ(RefuseUnitizing("0 0 0 1\n2\n"),
              "unitize.dat, line 3: the file ends before half the height of the image plane");
}
}
}
