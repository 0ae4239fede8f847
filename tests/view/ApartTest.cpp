#include "Failure.h"
#include "ViewTest.h"
#include <GL/gl.h>

namespace tessarine
{
namespace
{
void FillWith(float red, float green, float blue)
{
    glClearColor(red, green, blue, 0);
    glClear(GL_COLOR_BUFFER_BIT);
}

class ApartTest : public DrawnViewTest
{
};

TEST_F(ApartTest, IsAsLargeAsThePictureWhateverTheView)
{
    Image picture{300, 200, 3, {}}; // the view has 120 x 90
    m_View.DrawApart(picture,
                     []
                     {
                         glViewport(0, 0, 300, 200);
                         FillWith(1, 0, 0);
                         glEnable(GL_SCISSOR_TEST);
                         glScissor(299, 199, 1, 1);
                         FillWith(0, 0, 1);
                     });
    ASSERT_EQ(picture.pixels.size(), 300U * 200U * 3U);
    EXPECT_EQ(Count(picture, kRed), 300 * 200 - 1);
    EXPECT_EQ(GetPixel(picture, 299, 199), kBlue);
}

TEST_F(ApartTest, LeavesTheNextFrameAsItWas)
{
    Show(Build(SingleTriangle()));
    const Image before = m_View.TakePicture();
    Image picture{50, 50, 3, {}};
    m_View.DrawApart(picture,
                     []
                     {
                         glViewport(0, 0, 50, 50);
                         glPointSize(9);
                         glEnable(GL_SCISSOR_TEST);
                         FillWith(1, 1, 1);
                     });
    EXPECT_EQ(m_View.TakePicture().pixels, before.pixels);
}

TEST_F(ApartTest, LetsGoOfTheContextWhenDrawingFails)
{
    Image picture{50, 50, 3, {}};
    EXPECT_THROW(m_View.DrawApart(picture, [] { throw Failure("no"); }), Failure);
    EXPECT_NO_THROW(m_View.DrawApart(picture, [] { FillWith(0, 1, 0); }));
    EXPECT_EQ(Count(picture, kGreen), 50 * 50);
}

TEST_F(ApartTest, RefusesAPictureThatTheDriverCannotHold)
{
    Image picture{1 << 20, 10, 3, {}};
    EXPECT_THROW(m_View.DrawApart(picture, [] {}), Failure);
    EXPECT_GT(m_View.TakePicture().pixels.size(), 0U); // the surface is drawn on as before
}

TEST_F(ViewTest, DrawsNothingApartWithoutASurface)
{
    Image picture{50, 50, 3, {}};
    EXPECT_THROW(m_View.DrawApart(picture, [] {}), Failure);
}
}
}
