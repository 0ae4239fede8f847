#include "HeadlessPlatform.h"
#include "ErrorLine.h"
#include "File.h"
#include "StatusPanes.h"
#include <algorithm>
#include <utility>

namespace tessarine
{
HeadlessPlatform::HeadlessPlatform()
{
    std::copy(kPaneTexts.begin(), kPaneTexts.end(), m_PaneTexts.begin());
}

void HeadlessPlatform::ShowMessage(const std::string& title, const std::string& text)
{
    m_Messages.push_back({title, text});
    PrintErrorLine("message box \"" + title + "\": " + text);
}

/// A log keeps both: the box does not name the operation.
void HeadlessPlatform::ShowFailure(const std::string& operation, const std::string& reason, bool /*wasShown*/)
{
    const std::string place = m_strFailurePlace.empty() ? "" : m_strFailurePlace + ": ";
    PrintErrorLine("tessarine-batch: " + operation + ": " + place + reason);
}

std::optional<std::filesystem::path> HeadlessPlatform::AskOpenFile(const FileQuestion& question)
{
    auto choice = TakeFileAnswer(question);
    if (choice)
    {
        TrySetCurrentFolder(choice->parent_path());
    }
    return choice;
}

std::optional<std::filesystem::path> HeadlessPlatform::AskSaveFile(const FileQuestion& question)
{
    auto choice = TakeFileAnswer(question);
    if (choice)
    {
        SetCurrentFolder(choice->parent_path());
    }
    return choice;
}

std::optional<std::filesystem::path> HeadlessPlatform::TakeFileAnswer(const FileQuestion& question)
{
    m_FileQuestions.push_back(question);
    if (m_FileAnswers.empty())
    {
        return std::nullopt;
    }
    std::filesystem::path choice = std::move(m_FileAnswers.front());
    m_FileAnswers.pop_front();
    if (choice.is_relative())
    {
        choice = GetCurrentFolder() / choice;
    }
    return choice;
}

std::optional<float> HeadlessPlatform::AskAreaThreshold()
{
    ++m_nThresholdQuestions;
    if (m_ThresholdAnswers.empty())
    {
        return std::nullopt;
    }
    const float threshold = m_ThresholdAnswers.front();
    m_ThresholdAnswers.pop_front();
    return threshold;
}

void HeadlessPlatform::OpenLightingDialog(const std::vector<std::shared_ptr<Open3DLight>>& lights)
{
    m_LightingDialogs.emplace_back(lights.begin(), lights.end());
}

void HeadlessPlatform::OpenMaterialDialog(const std::shared_ptr<DSMaterial>& material)
{
    m_MaterialDialogs.emplace_back(material);
}

void HeadlessPlatform::SetPaneText(int pane, const std::string& text)
{
    m_PaneTexts.at(static_cast<std::size_t>(pane)) = text;
}

void HeadlessPlatform::SetViewSize(int width, int height)
{
    m_OffscreenView.width = width;
    m_OffscreenView.height = height;
}

std::unique_ptr<GLSurface> HeadlessPlatform::CreateGLSurface()
{
    return std::make_unique<OffscreenSurface>(m_OffscreenView);
}
}
