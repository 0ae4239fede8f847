#pragma once
#include <string>

namespace tessarine
{
class MANBrepElementManager;
class MANSceneManager;

/// A writer of model files. One object serves one save. The managers are not owned.
class IOSave
{
public:
    IOSave(MANSceneManager* sceneManager, MANBrepElementManager* elementManager)
        : m_pSceneManager(sceneManager), m_pElementManager(elementManager)
    {
    }
    virtual ~IOSave() = default;
    IOSave(const IOSave&) = delete;
    IOSave& operator=(const IOSave&) = delete;

    /// Writes the model. Throws Failure when that is not done whole; an older file then stays as it was.
    virtual void Save(const std::string& fileName) = 0;

protected:
    MANSceneManager* m_pSceneManager;
    MANBrepElementManager* m_pElementManager;
};
}
