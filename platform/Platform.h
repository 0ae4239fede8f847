#pragma once
#include "GLSurface.h"
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessarine
{
struct DSMaterial;
struct Open3DLight;

/// What a file dialog is asked for.
struct FileQuestion
{
    std::string filter;           ///< pairs "name|pattern|", ended by one more "|"
    std::string defaultExtension; ///< with its dot
    std::string title = {};       ///< empty: what such dialogs are called
    friend bool operator==(const FileQuestion&, const FileQuestion&) = default;
};

/// What the system asks of the machine that it runs on: in the window, in the batch tool and in the tests.
/// No other file calls a window system; Path, File and Image hold what is the same everywhere.
class Platform
{
public:
    virtual ~Platform() = default;

    /// A message box with one button. Text that the console holds back is shown first.
    virtual void ShowMessage(const std::string& title, const std::string& text) = 0;

    /// The same for one that an operation may show again and again, for each of many elements: a window lets its
    /// user leave out the others.
    virtual void ShowRepeatingMessage(const std::string& title, const std::string& text)
    {
        ShowMessage(title, text);
    }

    /// Tells the user that `operation` did not run, and why.
    /// @param wasShown the user has already seen a message box that says it; a window shows no second one
    virtual void ShowFailure(const std::string& operation, const std::string& reason, bool wasShown) = 0;

    /// Asks for a file. The choice makes its folder the current one. Nothing when the user cancels.
    /// @return the full path
    virtual std::optional<std::filesystem::path> AskOpenFile(const FileQuestion& question) = 0;
    virtual std::optional<std::filesystem::path> AskSaveFile(const FileQuestion& question) = 0;

    /// Asks for the threshold of the adaptive subdivision. Nothing when the user cancels.
    virtual std::optional<float> AskAreaThreshold() = 0;
    /// Opens one more dialog that writes into the lights as long as they are there. It stays open.
    virtual void OpenLightingDialog(const std::vector<std::shared_ptr<Open3DLight>>& lights) = 0;
    /// The same for a material.
    virtual void OpenMaterialDialog(const std::shared_ptr<DSMaterial>& material) = 0;

    /// One of the seven panes of the status bar, counted from the left.
    virtual void SetPaneText(int pane, const std::string& text) = 0;

    /// Gives the view the cursor of a file, whose name is in the form of the dataset names ("res\\Orbit.CUR").
    /// A file that is missing or broken makes the cursor vanish while it is over the view.
    virtual void SetCursorFromFile(const std::string& name) = 0;
    /// Gives the view the ordinary arrow.
    virtual void SetArrowCursor() = 0;

    /// Shows a sub-menu of the selection's pop-up menu, counted from 0, at a pixel of the view's client area. It
    /// stays open behind this call; what the user chooses there comes back as a command.
    virtual void ShowPopupMenu(int subMenu, int x, int y) = 0;

    /// Milliseconds of a clock that never goes back.
    virtual std::uint64_t GetTickCount();

    /// A new surface of the view's size, which must not outlive the platform. Throws GLSurfaceError.
    virtual std::unique_ptr<GLSurface> CreateGLSurface() = 0;
};

/// The platform of the process. Asking before one was set is a programming error (std::logic_error).
Platform& GetPlatform();

/// Gives back the platform before it.
Platform* SetPlatform(Platform* platform);

/// A message box with the title of the program.
void ShowMessage(const std::string& text);
void ShowRepeatingMessage(const std::string& text);
}
