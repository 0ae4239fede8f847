#include "OffscreenSurface.h"
#include "HeadlessPlatform.h"
#include <gtest/gtest.h>

#define EGL_NO_X11
#include <EGL/egl.h>

namespace tessarine
{
namespace
{
int GetBufferAttribute(int name)
{
    int value = 0;
    eglQuerySurface(eglGetCurrentDisplay(), eglGetCurrentSurface(EGL_DRAW), name, &value);
    return value;
}

int GetFormatAttribute(int name)
{
    int id = GetBufferAttribute(EGL_CONFIG_ID);
    const int wanted[] = {EGL_CONFIG_ID, id, EGL_NONE};
    EGLConfig config = nullptr;
    int count = 0;
    eglChooseConfig(eglGetCurrentDisplay(), wanted, &config, 1, &count);
    int value = 0;
    eglGetConfigAttrib(eglGetCurrentDisplay(), config, name, &value);
    return value;
}

TEST(OffscreenSurface, HasTheFormatOfAWindow)
{
    const OffscreenView view;
    OffscreenSurface surface(view);
    ASSERT_TRUE(surface.MakeCurrent());
    EXPECT_EQ(GetFormatAttribute(EGL_RED_SIZE), 8); // the first format that EGL offers has ten bits
    EXPECT_EQ(GetFormatAttribute(EGL_ALPHA_SIZE), 0);
    EXPECT_EQ(GetFormatAttribute(EGL_DEPTH_SIZE), 32);
    EXPECT_EQ(GetFormatAttribute(EGL_SAMPLES), 0);
    EXPECT_TRUE(surface.Release());
}

TEST(OffscreenSurface, IsCurrentBetweenMakeCurrentAndReleaseOnly)
{
    const OffscreenView view;
    OffscreenSurface surface(view);
    EXPECT_EQ(eglGetCurrentContext(), EGL_NO_CONTEXT);
    ASSERT_TRUE(surface.MakeCurrent());
    EXPECT_NE(eglGetCurrentContext(), EGL_NO_CONTEXT);
    EXPECT_TRUE(surface.Release());
    EXPECT_EQ(eglGetCurrentContext(), EGL_NO_CONTEXT);
}

TEST(OffscreenSurface, FollowsTheSizeOfTheView)
{
    OffscreenView view{320, 200};
    OffscreenSurface surface(view);
    ASSERT_TRUE(surface.MakeCurrent());
    EXPECT_EQ(GetBufferAttribute(EGL_WIDTH), 320);
    EXPECT_EQ(GetBufferAttribute(EGL_HEIGHT), 200);
    surface.Release();

    view.width = 64;
    ASSERT_TRUE(surface.MakeCurrent());
    EXPECT_EQ(GetBufferAttribute(EGL_WIDTH), 64);
    EXPECT_EQ(GetBufferAttribute(EGL_HEIGHT), 200);
    surface.Release();
}

TEST(OffscreenSurface, IsThereForAViewWithoutArea)
{
    const OffscreenView view{0, 0};
    OffscreenSurface surface(view);
    EXPECT_TRUE(surface.MakeCurrent());
    EXPECT_TRUE(surface.Release());
}

TEST(OffscreenSurface, SaysThatAViewIsTooLarge)
{
    const OffscreenView view{16385, 1};
    try
    {
        const OffscreenSurface surface(view);
        FAIL() << "a driver draws 16384 pixels a side";
    }
    catch (const GLSurfaceError& error)
    {
        EXPECT_EQ(error.GetStep(), "SetPixelFormat failed");
        EXPECT_NE(std::string(error.what()).find("16385x1"), std::string::npos) << error.what();
    }
}

TEST(OffscreenSurface, IsWatchedAsItsPlatformTells)
{
    HeadlessPlatform platform;
    const auto surface = platform.CreateGLSurface();
    EXPECT_TRUE(surface->IsWatched());
    platform.SetWatched(false);
    EXPECT_FALSE(surface->IsWatched());
}
}
}
