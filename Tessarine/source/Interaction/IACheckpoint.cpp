#include "IACheckpoint.h"
#include <utility>

namespace tessarine
{
IACheckpoint::IACheckpoint(IAController& controller, Open3DView& view, MANCommandManager& commands,
                           Effect effect)
    : m_Controller(controller),
      m_View(view),
      m_Commands(commands),
      m_Effect(effect),
      m_nDisplayFlags(view.GetDisplayFlags()),
      m_KeptCommands(controller.Save()),
      m_History(commands.Save())
{
    if (effect == Effect::None)
    {
        return;
    }
    m_Overlays.emplace(view.Save());
    if (effect == Effect::ReplacesDocument)
    {
        return;
    }
    m_Scene.emplace(controller.GetSceneManager().Save());
    if (effect == Effect::ChangesModel)
    {
        m_Elements.emplace(controller.GetElementManager().Save());
    }
    else if (effect == Effect::Adds)
    {
        m_Mark.emplace(controller.GetElementManager().GetMark());
    }
    else
    {
        controller.SetElementsAside(&m_Elements);
    }
}

IACheckpoint::~IACheckpoint()
{
    if (m_Effect == Effect::ReplacesModel) // else the controller may be gone: a new document has its own
    {
        m_Controller.SetElementsAside(nullptr);
    }
}

void IACheckpoint::Restore() noexcept
{
    if (m_Elements)
    {
        m_Controller.GetElementManager().Restore(std::move(*m_Elements));
    }
    if (m_Mark)
    {
        m_Controller.GetElementManager().Rewind(std::move(*m_Mark));
    }
    if (m_Scene)
    {
        m_Controller.GetSceneManager().Restore(std::move(*m_Scene));
    }
    if (m_Overlays)
    {
        m_View.Restore(std::move(*m_Overlays));
    }
    m_View.SetDisplayFlags(m_nDisplayFlags);
    m_Controller.Restore(m_KeptCommands);
    m_Commands.Restore(m_History);
    m_Controller.SetView(&m_View); // a new document that failed may have taken the view
}
}
