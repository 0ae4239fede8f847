#pragma once

namespace tessarine
{
/// Base of everything that changes the model or the camera: made by id (MANCommandManager), given what it
/// needs through setters of its own, and run. A class overrides only what it has.
class IACommand
{
public:
    virtual ~IACommand() = default;
    IACommand(const IACommand&) = delete;
    IACommand& operator=(const IACommand&) = delete;

    /// Runs. All parameters were set before.
    virtual void Execute() {}
    /// Restores the state from before the runs of this object.
    virtual void Undo() {}
    /// Two slots kept free: no class has a use for them, and nothing calls them.
    virtual void Reserve1() {}
    virtual void Reserve2() {}

    /// Whether the history keeps the command.
    bool IsUndoable() const { return m_bUndoable; }

protected:
    explicit IACommand(bool undoable = true) : m_bUndoable(undoable) {}

private:
    bool m_bUndoable;
};
}
