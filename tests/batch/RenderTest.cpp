#include "BatchProcess.h"
#include "Image.h"
#include "TemporaryFolder.h"
#include <algorithm>
#include <cstdlib>
#include <gmock/gmock.h>

using namespace tessarine;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace
{
/// An environment variable that has this value while it lives.
class Environment
{
public:
    Environment(const char* name, const char* value) : m_pName(name) { ::setenv(name, value, 1); }
    ~Environment() { ::unsetenv(m_pName); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    const char* m_pName;
};

/// A machine without any driver for GL, and one whose driver has lost its fixed-function pipeline.
Environment WithoutDriver()
{
    return {"__EGL_VENDOR_LIBRARY_FILENAMES", "/nonexistent"};
}
Environment WithoutFixedFunctions()
{
    return {"MESA_GL_VERSION_OVERRIDE", "3.1FC"};
}

/// A folder with the model tetra.obj.
class Render : public testing::Test
{
protected:
    Render() { m_Folder.Write("tetra.obj", kTetrahedron); }

    ProcessResult Run(const std::vector<std::string>& arguments) const
    {
        return RunBatch(m_Folder, arguments);
    }

    Image Read(const std::string& name) const { return ReadImage(m_Folder / name); }

    TemporaryFolder m_Folder;
};

bool IsLit(const Image& picture, int x, int y)
{
    const std::uint8_t* pixel =
        &picture.pixels.at(std::size_t{3} * static_cast<unsigned>(y * picture.width + x));
    return pixel[0] != 0 || pixel[1] != 0 || pixel[2] != 0;
}

int CountLit(const Image& picture)
{
    int count = 0;
    for (int y = 0; y < picture.height; ++y)
    {
        for (int x = 0; x < picture.width; ++x)
        {
            count += IsLit(picture, x, y) ? 1 : 0;
        }
    }
    return count;
}
}

TEST_F(Render, WritesAFrameOfTheModel)
{
    const ProcessResult result = Run({"-q", "import", "tetra.obj", "render", "a.png"});

    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_THAT(result.output, IsEmpty());
    const Image picture = Read("a.png");
    EXPECT_EQ(picture.width, 800);
    EXPECT_EQ(picture.height, 600);
    // Its edges are 2.8 long, 14.7 from the eye: 2.8 * 600 / (2 * 14.7 * tan 22.5) = 138 pixels. Seen from any side
    // it covers some of a square of that side.
    EXPECT_GT(CountLit(picture), 138 * 138 / 4);
    EXPECT_LT(CountLit(picture), 138 * 138);
}

TEST_F(Render, WritesTheSameBytesAgain)
{
    Run({"-q", "import", "tetra.obj", "render", "a.png"});
    Run({"-q", "import", "tetra.obj", "render", "b.png", "render", "c.png"});

    ASSERT_THAT(m_Folder.Read("a.png"), StartsWith("\x89PNG"));
    EXPECT_TRUE(m_Folder.Read("a.png") == m_Folder.Read("b.png"));
    EXPECT_TRUE(m_Folder.Read("a.png") == m_Folder.Read("c.png"));
}

TEST_F(Render, DrawsInASizeOfItsUsers)
{
    EXPECT_EQ(Run({"-q", "--window", "97x31", "import", "tetra.obj", "render", "a.png"}).status, 0);

    const Image picture = Read("a.png");
    EXPECT_EQ(picture.width, 97);
    EXPECT_EQ(picture.height, 31);
    EXPECT_GT(CountLit(picture), 10);
}

TEST_F(Render, WritesTheTopLineFirst)
{
    // A triangle that stands on its base, seen from both sides.
    m_Folder.Write("up.obj", "v -1 -1 0\nv 1 -1 0\nv 0 1 0\nf 1 2 3\nf 3 2 1\n");
    EXPECT_EQ(Run({"-q", "import", "up.obj", "render", "up.png"}).status, 0);

    const Image picture = Read("up.png"); // its row 0 is the bottom line again
    const auto widthOf = [&picture](int row)
    {
        int width = 0;
        for (int x = 0; x < picture.width; ++x)
        {
            width += IsLit(picture, x, row) ? 1 : 0;
        }
        return width;
    };
    // The model's middle stands in the middle of the picture.
    EXPECT_GT(widthOf(picture.height / 2 - 30), widthOf(picture.height / 2 + 30));
    EXPECT_GT(widthOf(picture.height / 2 + 30), 0);
}

TEST_F(Render, WritesToStandardOutputForAMinus)
{
    const ProcessResult result = Run({"-q", "import", "tetra.obj", "render", "-", "render", "a.png"});

    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.output == m_Folder.Read("a.png"));
}

TEST_F(Render, LeavesNothingWhereItCannotWrite)
{
    const ProcessResult result = Run({"render", "missing/a.png"});

    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, StartsWith("tessarine-batch: render: "));
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1);
    EXPECT_EQ(m_Folder.List(), std::set<std::string>{"tetra.obj"});
}

TEST_F(Render, SaysWhatIsMissingWhereThereIsNoGL)
{
    const Environment environment = WithoutDriver();
    const ProcessResult result =
        Run({"-q", "import", "tetra.obj", "dump", "a.json", "render", "a.png", "dump", "b.json"});

    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, AllOf(HasSubstr("message box \"Tessarine\": ChoosePixelFormat failed\n"),
                                     HasSubstr("tessarine-batch: render: nothing can be drawn here: "),
                                     HasSubstr("libegl1"), HasSubstr("libgl1-mesa-dri")));
    EXPECT_TRUE(m_Folder.Has("a.json")); // what stands before it has run
    EXPECT_FALSE(m_Folder.Has("a.png"));
    EXPECT_FALSE(m_Folder.Has("b.json"));
}

TEST_F(Render, SaysThatTheCompatibilityProfileIsMissing)
{
    const Environment environment = WithoutFixedFunctions();
    const ProcessResult result = Run({"render", "a.png"});

    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, AllOf(HasSubstr("message box \"Tessarine\": wglCreateContext failed\n"),
                                     HasSubstr("has no compatibility profile")));
    EXPECT_FALSE(m_Folder.Has("a.png"));
}

TEST_F(Render, IsTheOnlyReasonToLookForGL)
{
    const Environment environment = WithoutDriver();
    const ProcessResult result =
        Run({"-q", "import", "tetra.obj", "subdivide-loop", "menu", "32778", "status", "dump", "a.json"});

    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_THAT(result.output, HasSubstr("面片数: 64\n")); // 4 faces, twice subdivided
}
