#include "Cursor.h"
#include "DSTexture.h"
#include "EigenTable.h"
#include "Failure.h"
#include "File.h"
#include "IODatasetText.h"
#include "IOLoadObj.h"
#include "Image.h"
#include "SparseMatrix.h"
#include "WorkbenchTest.h"
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

/// A name in a model, a library or a dataset may lead anywhere. What is no ordinary file is refused, and never waited for.
namespace tessarine
{
namespace
{
using testing::AnyOf;
using testing::HasSubstr;

/// Something that reads a file, and the ending of its name.
struct NamedReader
{
    const char* name;
    const char* ending;
    /// Reads it, or names it in a file that is read.
    void (*read)(const std::string& file);
};

void ReadWhatAModelNames(const std::string& line, const std::string& file)
{
    MANSceneManager scene;
    MANBrepElementManager elements;
    IOLoadObj(&scene, &elements).LoadText("model.obj", line + " " + file + "\nv 0 0 0\n");
}

void ReadPictureOfALibrary(const std::string& file)
{
    std::ofstream("library.mtl") << "newmtl a\nmap_Kd " << file << "\n";
    ReadWhatAModelNames("mtllib", "library.mtl");
}

void ReadTextOfADataset(const std::string& file)
{
    IODatasetText text(file);
    text.ReadInteger("count");
}

constexpr NamedReader kReaders[] = {
    {"Model", "obj",
     [](const std::string& file)
     {
         MANSceneManager scene;
         MANBrepElementManager elements;
         IOLoadObj(&scene, &elements).Load(file);
     }},
    {"Library", "mtl", [](const std::string& file) { ReadWhatAModelNames("mtllib", file); }},
    {"Pixmap", "ppm", ReadPictureOfALibrary},
    {"TextureBmp", "bmp", ReadPictureOfALibrary},
    {"TexturePng", "png", ReadPictureOfALibrary},
    {"TextureJpg", "jpg", ReadPictureOfALibrary},
    {"TextureGif", "gif", ReadPictureOfALibrary},
    {"TextureTga", "tga", ReadPictureOfALibrary},
    {"TextureTiff", "tiff", ReadPictureOfALibrary},
    {"Picture", "png", [](const std::string& file) { ReadImage(file); }},
    {"Cursor", "CUR", [](const std::string& file) { ReadCursor(file); }},
    {"Dataset", "txta", ReadTextOfADataset},
    {"EigenTable", "dat", [](const std::string& file) { ReadEigenTable(file).Get(6); }},
    {"Matrix", "mtx", [](const std::string& file) { CSparseMatrix().ReadMatrix(file); }},
    {"Vector", "vec", [](const std::string& file) { CSparseMatrix().ReadVector(file); }},
};

/// Makes something of the name that is no ordinary file.
struct SpecialKind
{
    const char* name;
    void (*make)(const std::string& file);
};

void MakeSocket(const std::string& file)
{
    const int number = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    file.copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(::bind(number, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(number);
}

constexpr SpecialKind kSpecialKinds[] = {
    {"Folder", [](const std::string& file) { std::filesystem::create_directory(file); }},
    {"Pipe", [](const std::string& file) { EXPECT_EQ(::mkfifo(file.c_str(), 0600), 0); }},
    {"Socket", MakeSocket},
    {"LinkToADevice", [](const std::string& file) { std::filesystem::create_symlink("/dev/zero", file); }},
    {"LinkToAPipe",
     [](const std::string& file)
     {
         EXPECT_EQ(::mkfifo("pipe", 0600), 0);
         std::filesystem::create_symlink("pipe", file);
     }},
};

class SpecialFiles : public testing::TestWithParam<std::tuple<NamedReader, SpecialKind>>
{
protected:
    TemporaryCurrentFolder m_Folder;
    RecordingPlatform m_Platform;
    AssertionCapture m_Assertions;
    ConsoleCapture m_Console;
    ErrorLineCapture m_Errors;
};

/// A reader says it to whoever called, on standard error, or on the console.
TEST_P(SpecialFiles, AreRefusedWithoutWaiting)
{
    const auto& [reader, kind] = GetParam();
    const std::string file = std::string("special.") + reader.ending;
    kind.make(file);
    std::string said;
    try
    {
        reader.read(file);
    }
    catch (const Failure& failure)
    {
        said = failure.GetMessage();
    }
    catch (const FileError& error)
    {
        said = error.what();
    }
    said += m_Errors.GetText() + m_Console.GetText();
    EXPECT_THAT(said, AnyOf(HasSubstr("it is no ordinary file"), HasSubstr("it is a folder"),
                            HasSubstr("Cannot open file!!")));
}

INSTANTIATE_TEST_SUITE_P(AnyReader, SpecialFiles,
                         testing::Combine(testing::ValuesIn(kReaders), testing::ValuesIn(kSpecialKinds)),
                         [](const auto& test) {
                             return std::string(std::get<0>(test.param).name) + std::get<1>(test.param).name;
                         });
}
}
