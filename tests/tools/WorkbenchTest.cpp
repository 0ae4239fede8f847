#include "WorkbenchTest.h"

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

DSSolid* WorkbenchTest::Show(const IndexedMesh& mesh)
{
    DSSolid* solid = LoadQuietly(GetElements(), mesh);
    GetScene().AppendLeaf(solid);
    return solid;
}

bool WorkbenchTest::Import(const std::string& name)
{
    m_Platform.AnswerFile(name);
    return m_Bench.Perform("import", Effect::ReplacesModel, [this] { m_Bench.ImportObj(); });
}
}
