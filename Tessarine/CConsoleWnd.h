#pragma once
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QStringDecoder>
#include <QTimer>
#include <string>
#include <string_view>

namespace tessarine
{
/// The window of the debug console, with the title "DebugOutput": the last 500 lines, the one that is being
/// written included. Closing it hides it.
class CConsoleWnd : public QPlainTextEdit
{
public:
    static constexpr int kLineCount = 500;
    /// A longer line is broken, in characters.
    static constexpr int kLongestLine = 2000;

    CConsoleWnd();

    /// Adds text behind all before it. It is shown at once, even while no event is handled, unless the last text
    /// came less than a tenth of a second before: then it waits for the events, or for the next text.
    /// @return whether it is shown now
    bool Append(std::string_view text);

    /// Shows what waits.
    void ShowPending();

    QSize sizeHint() const override;

private:
    void AppendLines(const QString& characters);

    std::string m_strPending;
    QStringDecoder m_Decoder; ///< a character may come in two pieces
    int m_nColumn = 0;        ///< characters of the line that is being written
    QElapsedTimer m_SinceShown;
    QTimer m_Soon;
};
}
