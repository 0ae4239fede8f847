#pragma once
#include "FaceRuns.h"
#include "IATool.h"
#include <memory>

namespace tessarine
{
class IASelectCommand;

/// The tool of the start. What is under the mouse gets the hover mark with each motion; a left click selects it, or
/// takes it out of the selection; a right click opens the pop-up menu of the selection's type.
///
/// A click goes by the last motion, not by its own position. The list of the hover mark stays when the tool
/// leaves.
class IASelectTool : public IATool
{
public:
    IASelectTool();
    ~IASelectTool() override;
    void Enter() override;
    void Leave() override;
    /// Fails   An element that is gone by now gives a message box, and nothing is selected.
    void OnLButtonDown(int x, int y, unsigned flags) override;
    void OnRButtonDown(int x, int y, unsigned flags) override;
    void OnMouseMove(int x, int y, unsigned flags) override;

    /// Something may change the model: what is kept of it goes.
    void ForgetModel() { m_FaceRuns.Clear(); }
    /// Looks at the model ahead of the next motion, which is to be short: boxes of what is there already stay, those of
    /// the rest are made. For when the model is whole again.
    void PrepareModel() noexcept;

private:
    enum class State
    {
        Idle = 0,
        Ready = 4
    };

    State m_nState = State::Idle;
    FaceRuns m_FaceRuns;
    std::unique_ptr<IASelectCommand> m_pCommand;
};
}
