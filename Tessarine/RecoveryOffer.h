#pragma once
#include <filesystem>

class QWidget;

namespace tessarine
{
/// What is to become of a model that a window left when its process was ended.
enum class RecoveryAnswer
{
    Recover, ///< bring it into this window
    Discard, ///< remove it
    Later    ///< leave it for the next start
};

/// Asks for it. A box that is closed without an answer leaves the model.
/// @param time when the model was written
RecoveryAnswer AskAboutRecovery(QWidget& parent, std::filesystem::file_time_type time);
}
