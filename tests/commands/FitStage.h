#pragma once
#include "Capture.h"
#include "MANSceneManager.h"
#include "Meshes.h"
#include "Open3DView.h"
#include "TemporaryFolder.h"
#include <array>
#include <charconv>
#include <string>
#include <vector>

namespace tessarine
{
/// A model, a view and a folder with the cloud of a fitting command.
class FitStage
{
public:
    DSSolid& Load(const IndexedMesh& mesh)
    {
        DSSolid* pSolid = LoadQuietly(m_Elements, mesh);
        MANSceneLeaf* pLeaf = m_Scene.NewLeaf();
        m_Scene.GetRootGroup()->AddChild(pLeaf);
        pLeaf->SetParent(m_Scene.GetRootGroup());
        pLeaf->SetSolid(pSolid);
        return *pSolid;
    }

    /// @return the cloud as a command reads it, in single precision
    std::vector<smVec3d> WriteCloud(const std::string& name, const std::vector<smVec3d>& points)
    {
        std::string text = std::to_string(points.size()) + "\n";
        std::vector<smVec3d> read;
        for (const smVec3d& p : points)
        {
            const smVec3f single(static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z));
            for (const float value : {single.x, single.y, single.z})
            {
                std::array<char, 32> digits{};
                text.append(digits.data(),
                            std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
                text += ' ';
            }
            text += '\n';
            read.emplace_back(single);
        }
        m_Folder.Write(name, text);
        return read;
    }

    template <class TCommand>
    void Equip(TCommand& command)
    {
        command.SetElementManager(&m_Elements);
        command.SetSceneManager(&m_Scene);
        command.SetView(&m_View);
    }

    MANBrepElementManager& GetElements() { return m_Elements; }
    MANSceneManager& GetScene() { return m_Scene; }
    Open3DView& GetView() { return m_View; }
    TemporaryCurrentFolder& GetFolder() { return m_Folder; }

private:
    TemporaryCurrentFolder m_Folder;
    MANBrepElementManager m_Elements;
    MANSceneManager m_Scene;
    Open3DView m_View;
};

/// Points on the unit sphere, and the ends of the axes, so that the cube leaves them where they are.
std::vector<smVec3d> SphereCloud(std::size_t count, unsigned seed);
}
