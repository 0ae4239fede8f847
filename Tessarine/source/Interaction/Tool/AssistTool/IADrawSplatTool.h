#pragma once
#include "IATool.h"
#include <memory>

namespace tessarine
{
class IACommand;

/// Draws a rectangle on the screen. Its command comes with a later version: until then Enter says so.
class IADrawSplatTool : public IATool
{
public:
    ~IADrawSplatTool() override;
    /// Makes the command. Fails as MANCommandManager::CreateCommand does.
    void Enter() override;
    void Leave() override;

private:
    std::unique_ptr<IACommand> m_pCommand;
};
}
