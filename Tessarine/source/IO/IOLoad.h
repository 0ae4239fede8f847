#pragma once
#include <string>

namespace tessarine
{
class MANBrepElementManager;
class MANSceneManager;

/// A reader of model files. One object serves one load. The managers are not owned.
class IOLoad
{
public:
    IOLoad(MANSceneManager* sceneManager, MANBrepElementManager* elementManager)
        : m_pSceneManager(sceneManager), m_pElementManager(elementManager)
    {
    }
    virtual ~IOLoad() = default;
    IOLoad(const IOLoad&) = delete;
    IOLoad& operator=(const IOLoad&) = delete;

    /// Brings the model of the file into the scene.
    /// Throws Failure when there is none to bring; what was made until then stays in the managers.
    virtual void Load(const std::string& fileName) = 0;

protected:
    MANSceneManager* m_pSceneManager;
    MANBrepElementManager* m_pElementManager;
};
}
