#pragma once
#include "IATool.h"
#include <memory>

namespace tessarine
{
class IADrawSplatCommand;

/// Draws a splat: a line between two pixels, from where the left button goes down to where it comes up. While it
/// is down the splat shows over the frame.
class IADrawSplatTool : public IATool
{
public:
    IADrawSplatTool();
    ~IADrawSplatTool() override;
    void Enter() override;
    void Leave() override;
    void OnLButtonDown(int x, int y, unsigned flags) override;
    void OnLButtonUp(int x, int y, unsigned flags) override;
    void OnMouseMove(int x, int y, unsigned flags) override;

    /// The document of a drag is gone: its release adds nothing.
    void EndDrag();

private:
    enum class State
    {
        Idle,
        Ready,
        Dragging
    };

    State m_nState = State::Idle;
    std::unique_ptr<IADrawSplatCommand> m_pCommand;
};
}
