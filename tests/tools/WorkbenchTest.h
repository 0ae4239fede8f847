#pragma once
#include "Capture.h"
#include "IAWorkbench.h"
#include "Meshes.h"
#include "TemporaryFolder.h"
#include <gmock/gmock.h>
#include <new>
#include <string>
#include <vector>

namespace tessarine
{
/// A machine without a window that keeps the failures which it shows.
class RecordingPlatform : public HeadlessPlatform
{
public:
    struct Shown
    {
        std::string operation;
        std::string reason;
        bool wasShown = false; ///< in a message box before
        friend bool operator==(const Shown&, const Shown&) = default;
    };

    RecordingPlatform() : m_pBefore(SetPlatform(this)) {}
    ~RecordingPlatform() override { SetPlatform(m_pBefore); }

    void ShowFailure(const std::string& operation, const std::string& reason, bool wasShown) override
    {
        m_Failures.push_back({operation, reason, wasShown});
    }

    const std::vector<Shown>& GetFailures() const { return m_Failures; }

    /// The reason of the only failure so far.
    std::string GetOnlyReason() const;
    /// Texts of the message boxes so far.
    std::vector<std::string> GetTexts() const;

private:
    Platform* m_pBefore;
    std::vector<Shown> m_Failures;
};

/// A machine whose status bar cannot be written, once it is told so: no frame comes to its end.
class FailingPanes : public RecordingPlatform
{
public:
    void Fail() { m_bFails = true; }

    void SetPaneText(int pane, const std::string& text) override
    {
        if (m_bFails)
        {
            throw std::bad_alloc();
        }
        RecordingPlatform::SetPaneText(pane, text);
    }

private:
    bool m_bFails = false;
};

/// A workbench on a platform and in a folder of its own. What it prints on the console is kept.
class WorkbenchTest : public testing::Test
{
protected:
    /// Puts a model into a new leaf at the end of the root.
    DSSolid* Show(const IndexedMesh& mesh);

    IAController& GetController() { return m_Bench.GetController(); }
    MANBrepElementManager& GetElements() { return GetController().GetElementManager(); }
    MANSceneManager& GetScene() { return GetController().GetSceneManager(); }

    bool Import(const std::string& name);

    TemporaryCurrentFolder m_Folder;
    ConsoleCapture m_Console;
    AssertionCapture m_Assertions;
    RecordingPlatform m_Platform;
    IAWorkbench m_Bench;
};

/// An OBJ file of one triangle, and one of a tetrahedron.
inline constexpr char kTriangleObj[] = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";
inline constexpr char kTetrahedronObj[] =
    "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nf 1 3 2\nf 1 2 4\nf 2 3 4\nf 3 1 4\n";
}
