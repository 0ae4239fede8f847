#pragma once
#include "IORecoveryFolder.h"
#include "RecoveryPace.h"
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tessarine
{
class IAController;

/// Keeps a copy of the model on disk for the case that the process is ended before the user has saved it.
///
/// A model is losable once an operation has changed it; what an import has just read lies in its own file. The copy is
/// written on the one thread there is, between operations, as often as RecoveryPace lets it.
///
/// Says    "The recovery file was not written: REASON", once. No operation fails for that.
class IARecovery
{
public:
    /// @param folder where the copies of all windows are; empty for none, and then nothing is ever written
    explicit IARecovery(std::filesystem::path folder);
    IARecovery(const IARecovery&) = delete;
    IARecovery& operator=(const IARecovery&) = delete;

    void MarkChanged() { m_bLosable = true; }
    void MarkSafe() { m_bLosable = false; }

    /// Writes the model if it could be lost, it has a face, and it is time for it.
    void Keep(IAController& controller) noexcept;

    /// The copies of windows whose process was ended, the latest first.
    std::vector<IORecoveryFolder> FindAbandoned() const { return IORecoveryFolder::FindAbandoned(m_Folder); }

    /// Takes a copy for the window's own, whose model has been imported: it stays until there is a newer one.
    void Adopt(IORecoveryFolder copy);

    /// At a clean exit: the copy goes. Another window may follow.
    void End() noexcept;

private:
    void Write(IAController& controller);
    void TellOnce(const std::string& reason);

    std::filesystem::path m_Folder;
    RecoveryPace m_Pace;
    std::optional<IORecoveryFolder> m_Own;
    bool m_bLosable = false;
    bool m_bTold = false;
};
}
