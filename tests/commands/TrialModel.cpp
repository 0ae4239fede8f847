#include "TrialModel.h"
#include "Capture.h"
#include "IASubLOOPCommand.h"
#include "RecordDump.h"
#include <gtest/gtest.h>
#include <typeinfo>

namespace tessarine
{
namespace
{
std::string DescribeScene(const MANSceneManager& scene)
{
    std::string text;
    for (const MANSceneNode* node : scene.GetRootGroup()->GetChildren())
    {
        const DSSolid* solid = static_cast<const MANSceneLeaf*>(node)->GetSolid();
        text += std::to_string(node->GetID()) + (node->IsVisible() ? " visible " : " hidden ") +
                std::to_string(solid->GetID()) +
                (node->GetParent() == scene.GetRootGroup() ? "\n" : " stray\n");
    }
    return text;
}

/// Without its context: where a failure is met first depends on the order of the work.
std::string DescribeException(const IException& exception)
{
    const std::string& message = exception.GetMessage();
    const std::size_t context = message.starts_with("( ") ? message.rfind(" ) ") + 3 : 0;
    return std::string(typeid(exception).name()) + ' ' + message.substr(context);
}
}

TrialModel::TrialModel(const IndexedMesh& mesh, bool isSecond)
{
    if (isSecond)
    {
        LoadQuietly(m_Elements, QuadCube());
    }
    m_pSolid = LoadQuietly(m_Elements, mesh);
    const AssertionCapture assertions;
    const ConsoleCapture console;
    m_pSolid->CalcNormals();
    m_Scene.AppendLeaf(m_pSolid);
}

void TrialModel::Subdivide()
{
    const ConsoleCapture console;
    IASubLOOPCommand command;
    command.SetElementManager(&m_Elements);
    command.SetSceneManager(&m_Scene);
    command.Execute();
}

TrialOutcome TrialModel::Run(const Step& step)
{
    TrialOutcome outcome;
    const AssertionCapture assertions;
    ConsoleCapture console;
    try
    {
        step(m_Elements, m_Scene);
    }
    catch (const IException& exception)
    {
        outcome.failure = DescribeException(exception);
    }
    outcome.console = console.GetText();
    outcome.assertions = assertions.GetExpressions();
    outcome.records = DumpRecords(m_Elements);
    outcome.scene = DescribeScene(m_Scene);
    return outcome;
}

bool ExpectSameOutcome(TrialModel& first, const TrialModel::Step& literal, TrialModel& second,
                       const TrialModel::Step& command, const std::string& name)
{
    const TrialOutcome expected = first.Run(literal);
    const TrialOutcome outcome = second.Run(command);
    EXPECT_EQ(outcome.failure, expected.failure) << name;
    EXPECT_EQ(outcome.console, expected.console) << name;
    EXPECT_EQ(outcome.assertions, expected.assertions) << name;
    EXPECT_EQ(outcome.scene, expected.scene) << name;
    EXPECT_TRUE(outcome.records == expected.records) << name << ": the records differ";
    return expected.failure.empty();
}
}
