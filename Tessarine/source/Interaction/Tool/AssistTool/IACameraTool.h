#pragma once
#include "Assert.h"
#include "IACameraCommand.h"
#include "IATool.h"
#include <memory>

namespace tessarine
{
/// A tool that moves the camera while the left button is down. One command serves from Enter to Leave; each
/// motion of the mouse is one run of it, on the way since the last motion.
///
/// The right button means nothing. The mouse is not captured: a button that goes up outside the view leaves
/// the tool dragging until the next press and release in it.
class IACameraTool : public IATool
{
public:
    void Enter() override;
    void Leave() override;
    void OnLButtonDown(int x, int y, unsigned flags) override;
    void OnLButtonUp(int x, int y, unsigned flags) override;
    /// The file is named anew each time: a cursor that has appeared in the meantime is found.
    void OnSetCursor() override;

    /// A slot kept free: no tool has a use for it, and nothing calls it.
    virtual void OnCameraChange() {}

protected:
    /// @param commandID the class of its command, one of IACameraCommand
    /// @param cursorFile in the form of the dataset names
    IACameraTool(unsigned commandID, const char* cursorFile)
        : m_nCommandID(commandID), m_pCursorFile(cursorFile)
    {
    }

    bool IsDragging() const { return m_nState == State::Dragging; }

    /// Pixels to the right of the last position, and above it.
    double GetWayRight(int x) const;
    double GetWayUp(int y) const;

    /// Asserts that there is one.
    template <class TCommand>
    TCommand& GetCommand() const
    {
        ASSERT(m_pCommand != nullptr);
        return static_cast<TCommand&>(*m_pCommand);
    }

    /// Runs the command once, takes the position for the last one, and shows where the camera is: pane 3, and
    /// a frame.
    void RunStep(int x, int y);

    int m_nX = 0; ///< the last position of the mouse
    int m_nY = 0;

private:
    enum class State
    {
        Idle,
        Ready,
        Dragging
    };

    void UpdateCameraStatus() const;

    const unsigned m_nCommandID;
    const char* const m_pCursorFile;
    State m_nState = State::Idle;
    std::unique_ptr<IACameraCommand> m_pCommand;
};
}
