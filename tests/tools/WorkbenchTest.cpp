#include "WorkbenchTest.h"
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace tessarine
{
std::string RecordingPlatform::GetOnlyReason() const
{
    EXPECT_EQ(m_Failures.size(), 1U);
    return m_Failures.empty() ? "" : m_Failures.front().reason;
}

std::vector<std::string> RecordingPlatform::GetTexts() const
{
    std::vector<std::string> texts;
    for (const Message& message : GetMessages())
    {
        texts.push_back(message.text);
    }
    return texts;
}

TemporaryFolder::TemporaryFolder() : m_Before(std::filesystem::current_path())
{
    std::string pattern = std::filesystem::temp_directory_path() / "tessarine-XXXXXX";
    EXPECT_NE(mkdtemp(pattern.data()), nullptr);
    std::filesystem::current_path(pattern);
    m_Path = std::filesystem::current_path();
}

TemporaryFolder::~TemporaryFolder()
{
    std::filesystem::current_path(m_Before);
    std::filesystem::remove_all(m_Path);
}

void TemporaryFolder::Write(const std::string& name, const std::string& text) const
{
    const std::filesystem::path path = m_Path / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

std::string TemporaryFolder::Read(const std::string& name) const
{
    std::ostringstream text;
    text << std::ifstream(m_Path / name, std::ios::binary).rdbuf();
    return text.str();
}

DSSolid* WorkbenchTest::Show(const IndexedMesh& mesh)
{
    DSSolid* solid = LoadQuietly(GetElements(), mesh);
    MANSceneLeaf* leaf = GetScene().NewLeaf();
    leaf->SetSolid(solid);
    leaf->SetParent(GetScene().GetRootGroup());
    GetScene().GetRootGroup()->AddChild(leaf);
    return solid;
}

bool WorkbenchTest::Import(const std::string& name)
{
    m_Platform.AnswerFile(name);
    return m_Bench.Perform("import", Effect::ReplacesModel, [this] { m_Bench.ImportObj(); });
}
}
