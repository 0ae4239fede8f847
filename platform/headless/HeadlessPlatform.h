#pragma once
#include "OffscreenSurface.h"
#include "Platform.h"
#include <array>
#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace tessarine
{
/// The machine without a window: the batch tool's and the tests'.
/// Message boxes become lines on standard error and are kept; dialogs are answered from queues.
class HeadlessPlatform : public Platform
{
public:
    static constexpr int kPaneCount = 7;

    struct Message
    {
        std::string title;
        std::string text;
        friend bool operator==(const Message&, const Message&) = default;
    };

    /// A pop-up menu: which, and at which pixel.
    struct Popup
    {
        int subMenu = 0;
        int x = 0;
        int y = 0;
        friend bool operator==(const Popup&, const Popup&) = default;
    };

    HeadlessPlatform();

    void ShowMessage(const std::string& title, const std::string& text) override;
    void ShowFailure(const std::string& operation, const std::string& reason, bool wasShown) override;
    std::optional<std::filesystem::path> AskOpenFile(const FileQuestion& question) override;
    std::optional<std::filesystem::path> AskSaveFile(const FileQuestion& question) override;
    std::optional<float> AskAreaThreshold() override;
    void OpenLightingDialog(const std::vector<std::shared_ptr<Open3DLight>>& lights) override;
    void OpenMaterialDialog(const std::shared_ptr<DSMaterial>& material) override;
    void SetPaneText(int pane, const std::string& text) override;
    void SetCursorFromFile(const std::string& name) override { m_strCursor = name; }
    void SetArrowCursor() override { m_strCursor.clear(); }
    void ShowPopupMenu(int subMenu, int x, int y) override { m_Popups.push_back({subMenu, x, y}); }
    std::unique_ptr<GLSurface> CreateGLSurface() override;

    /// The size of the view in pixels, for the surfaces that there are and those to come.
    void SetViewSize(int width, int height);
    /// Whether somebody looks at the next frame. In the beginning somebody does.
    void SetWatched(bool watched) { m_OffscreenView.isWatched = watched; }

    /// Leads the reason of each failure from here on; empty for none.
    void SetFailurePlace(const std::string& place) { m_strFailurePlace = place; }

    /// Answers the next file dialog. An empty queue answers "cancel".
    void AnswerFile(std::string path) { m_FileAnswers.push_back(std::move(path)); }

    /// Answers the next question for a threshold. An empty queue answers "cancel".
    void AnswerAreaThreshold(float threshold) { m_ThresholdAnswers.push_back(threshold); }

    const std::string& GetPaneText(int pane) const { return m_PaneTexts.at(static_cast<std::size_t>(pane)); }

    /// The file of the view's cursor; empty for the arrow.
    const std::string& GetCursor() const { return m_strCursor; }

    /// What was shown so far, oldest first.
    const std::vector<Message>& GetMessages() const { return m_Messages; }

    /// The pop-up menus so far, oldest first. None of them is open.
    const std::vector<Popup>& GetPopups() const { return m_Popups; }

    /// What the file dialogs asked so far, oldest first.
    const std::vector<FileQuestion>& GetFileQuestions() const { return m_FileQuestions; }

    /// How often a threshold was asked for.
    int CountThresholdQuestions() const { return m_nThresholdQuestions; }
    /// What the dialogs that were opened write into, oldest first.
    const std::vector<std::vector<std::weak_ptr<Open3DLight>>>& GetLightingDialogs() const
    {
        return m_LightingDialogs;
    }
    const std::vector<std::weak_ptr<DSMaterial>>& GetMaterialDialogs() const { return m_MaterialDialogs; }

private:
    std::optional<std::filesystem::path> TakeFileAnswer(const FileQuestion& question);

    std::deque<std::string> m_FileAnswers;
    std::deque<float> m_ThresholdAnswers;
    int m_nThresholdQuestions = 0;
    std::vector<std::vector<std::weak_ptr<Open3DLight>>> m_LightingDialogs;
    std::vector<std::weak_ptr<DSMaterial>> m_MaterialDialogs;
    std::array<std::string, kPaneCount> m_PaneTexts;
    std::string m_strCursor;
    std::string m_strFailurePlace;
    OffscreenView m_OffscreenView;
    std::vector<Message> m_Messages;
    std::vector<Popup> m_Popups;
    std::vector<FileQuestion> m_FileQuestions;
};
}
