#pragma once
#include "IATool.h"
#include <memory>

namespace tessarine
{
class IACommand;

/// A tool that moves what is selected. Its command comes with a later version: until then Enter says so.
class IAMoveTool : public IATool
{
public:
    ~IAMoveTool() override;
    /// Makes the command. Fails as MANCommandManager::CreateCommand does.
    void Enter() override;

protected:
    /// @param commandID the class of its command
    explicit IAMoveTool(unsigned commandID) : m_nCommandID(commandID) {}

private:
    const unsigned m_nCommandID;
    std::unique_ptr<IACommand> m_pCommand;
};
}
