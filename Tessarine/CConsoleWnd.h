#pragma once
#include <QPlainTextEdit>
#include <QStringDecoder>
#include <string_view>

namespace tessarine
{
/// The window of the debug console, with the title "DebugOutput": the last 500 lines, the one that is being
/// written included. Closing it hides it.
class CConsoleWnd : public QPlainTextEdit
{
public:
    static constexpr int kLineCount = 500;

    CConsoleWnd();

    /// Adds text behind all before it, and shows it at once, also while no event is handled.
    void Append(std::string_view text);

    QSize sizeHint() const override;

private:
    QStringDecoder m_Decoder; ///< a character may come in two pieces
};
}
