#pragma once
#include "IATool.h"
#include "smVec3d.h"
#include <memory>

namespace tessarine
{
class IAMoveCommand;

/// A tool that moves what is selected while the mouse moves, with no button held: to the right along its
/// direction, to the left against it. The first motion only sets the base. A left click accepts, a right click
/// takes everything back; both take the tool off the stack, but a right click before any motion does nothing.
///
/// Says    "After OnLButtonDown....." and "After OnRButtonDown....", whatever the click did.
/// Fails   A step that its command refuses ends the move as a left click does; what was moved before stays. A step
///         whose frame fails is taken, and the move goes on.
class IAMoveTool : public IATool
{
public:
    ~IAMoveTool() override;

    /// An axis, or IAMoveCommand::kAlongNormal. To be set before Enter.
    void SetDirection(const smVec3d& direction) { m_Direction = direction; }

    /// Makes the command. Fails as IAMoveCommand::SavePositions does.
    void Enter() override;
    /// Asserts that no move is under way; the failure says how to end one.
    void Leave() override;
    void OnMouseMove(int x, int y, unsigned flags) override;
    void OnLButtonDown(int x, int y, unsigned flags) override;
    void OnRButtonDown(int x, int y, unsigned flags) override;

    /// Whether a move has been chosen that is neither accepted nor taken back.
    bool IsUnderWay() const { return m_nState != State::Idle; }
    /// Ends the move, and leaves what was moved where it is; the tool stays on the stack.
    void End();

protected:
    /// @param commandID the class of its command, one of IAMoveCommand
    explicit IAMoveTool(unsigned commandID);

private:
    enum class State
    {
        Idle = 0,
        Ready = 1,
        Moving = 3
    };

    double GetMoveScale() const;
    void RunStep(int x);
    void Accept();
    void Cancel();

    const unsigned m_nCommandID;
    State m_nState = State::Idle;
    smVec3d m_Direction;
    int m_nLastX = 0;
    std::unique_ptr<IAMoveCommand> m_pCommand; ///< kept after a click before any motion, until the next move
};
}
