#include "QtGLSurface.h"
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
QSurfaceFormat Format(int major, int minor, QSurfaceFormat::OpenGLContextProfile profile)
{
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setVersion(major, minor);
    format.setProfile(profile);
    return format;
}

TEST(FixedFunctions, AreInEveryContextBeforeTheProfiles)
{
    EXPECT_TRUE(HasFixedFunctions(Format(1, 4, QSurfaceFormat::NoProfile)));
    EXPECT_TRUE(HasFixedFunctions(Format(2, 1, QSurfaceFormat::NoProfile)));
    EXPECT_TRUE(HasFixedFunctions(Format(3, 0, QSurfaceFormat::NoProfile)));
}

TEST(FixedFunctions, NeedAnExtensionInVersionThreeOne)
{
    QSurfaceFormat format = Format(3, 1, QSurfaceFormat::NoProfile);
    EXPECT_FALSE(HasFixedFunctions(format));
    format.setOption(QSurfaceFormat::DeprecatedFunctions);
    EXPECT_TRUE(HasFixedFunctions(format));
}

TEST(FixedFunctions, AreInTheCompatibilityProfileOnly)
{
    EXPECT_TRUE(HasFixedFunctions(Format(4, 5, QSurfaceFormat::CompatibilityProfile)));
    EXPECT_FALSE(HasFixedFunctions(Format(4, 5, QSurfaceFormat::CoreProfile)));
    EXPECT_FALSE(HasFixedFunctions(Format(3, 2, QSurfaceFormat::CoreProfile)));
}

TEST(FixedFunctions, AreNotInOpenGLES)
{
    QSurfaceFormat format = Format(2, 0, QSurfaceFormat::NoProfile);
    format.setRenderableType(QSurfaceFormat::OpenGLES);
    EXPECT_FALSE(HasFixedFunctions(format));
}
}
}
