#include "IARecovery.h"
#include "Console.h"
#include "FailureText.h"
#include "IAController.h"
#include "IOSaveRecovery.h"
#include "Platform.h"
#include "TryTo.h"
#include <utility>

namespace tessarine
{
namespace
{
/// The time of a writing, also of one that fails.
class Timed
{
public:
    Timed(RecoveryPace& pace, std::size_t elements)
        : m_Pace(pace), m_nElements(elements), m_nBegin(GetPlatform().GetTickCount())
    {
    }
    ~Timed() { m_Pace.NoteWriting(m_nBegin, GetPlatform().GetTickCount(), m_nElements); }
    Timed(const Timed&) = delete;
    Timed& operator=(const Timed&) = delete;

private:
    RecoveryPace& m_Pace;
    std::size_t m_nElements;
    std::uint64_t m_nBegin;
};
}

IARecovery::IARecovery(std::filesystem::path folder)
    : m_Folder(std::move(folder)), m_Pace(GetPlatform().GetTickCount())
{
}

void IARecovery::Keep(IAController& controller) noexcept
{
    if (!m_bLosable || m_Folder.empty())
    {
        return;
    }
    try
    {
        Write(controller);
    }
    catch (...) // the model is whole; only its copy is not there
    {
        TryTo([this] { TellOnce(DescribeFailure()); });
    }
}

void IARecovery::Write(IAController& controller)
{
    MANBrepElementManager& elements = controller.GetElementManager();
    const std::size_t count = IOSaveRecovery::CountElements(elements);
    if (count == 0 || !m_Pace.IsDue(GetPlatform().GetTickCount(), count))
    {
        return;
    }
    const Timed timed(m_Pace, count);
    if (!m_Own || !m_Own->IsThere())
    {
        m_Own = IORecoveryFolder::Create(m_Folder);
    }
    m_Own->Replace([&](const std::filesystem::path& path)
                   { IOSaveRecovery(&controller.GetSceneManager(), &elements).Save(path.string()); });
    MarkSafe();
}

void IARecovery::TellOnce(const std::string& reason)
{
    if (!m_bTold)
    {
        m_bTold = true;
        DebugConsole() << "The recovery file was not written: " << reason << '\n';
    }
}

void IARecovery::Adopt(IORecoveryFolder copy)
{
    End();
    m_Own = std::move(copy);
}

void IARecovery::End() noexcept
{
    if (m_Own)
    {
        m_Own->Remove();
        m_Own.reset();
    }
    m_Pace = RecoveryPace(GetPlatform().GetTickCount());
}
}
