#include "CConsoleWnd.h"
#include "Answer.h"
#include <QFontDatabase>
#include <QScrollBar>

namespace tessarine
{
namespace
{
constexpr int kColumns = 80;
constexpr int kRows = 25;
constexpr std::chrono::milliseconds kShownEvery(100);
/// More than the window can show of lines of ordinary characters.
constexpr std::size_t kMostPending = 1U << 20U;

/// The end of a text that the window can show: however much comes at once, it costs a window full.
std::string_view KeepLastLines(std::string_view text)
{
    std::size_t begin = text.size();
    for (int lines = 0; lines < CConsoleWnd::kLineCount; ++lines)
    {
        const std::size_t end = begin == 0 ? std::string_view::npos : text.rfind('\n', begin - 1);
        if (end == std::string_view::npos)
        {
            return text;
        }
        begin = end;
    }
    return text.substr(begin);
}
}

CConsoleWnd::CConsoleWnd() : m_Decoder(QStringDecoder::Utf8)
{
    setWindowTitle("DebugOutput");
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setMaximumBlockCount(kLineCount);
    setLineWrapMode(QPlainTextEdit::WidgetWidth);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    QPalette colours = palette();
    colours.setColor(QPalette::Base, Qt::black);
    colours.setColor(QPalette::Text, QColor(204, 204, 204));
    setPalette(colours);
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_ShowWithoutActivating);
    m_Soon.setSingleShot(true);
    connect(&m_Soon, &QTimer::timeout, this, [this] { Answer([this] { ShowPending(); }); });
}

bool CConsoleWnd::Append(std::string_view text)
{
    m_strPending += text;
    if (m_strPending.size() > kMostPending)
    {
        m_strPending.erase(0, m_strPending.size() - kMostPending);
    }
    if (m_SinceShown.isValid() && m_SinceShown.elapsed() < kShownEvery.count())
    {
        m_Soon.start(kShownEvery);
        return false;
    }
    ShowPending();
    return true;
}

void CConsoleWnd::ShowPending()
{
    m_SinceShown.start();
    m_Soon.stop();
    const std::string_view shown = KeepLastLines(m_strPending);
    AppendLines(m_Decoder(QByteArrayView(shown.data(), static_cast<qsizetype>(shown.size()))));
    m_strPending.clear();
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    if (isVisible())
    {
        viewport()->repaint();
    }
}

void CConsoleWnd::AppendLines(const QString& characters)
{
    QString lines;
    for (const QChar character : characters)
    {
        if (character == '\r')
        {
            continue;
        }
        if (m_nColumn == kLongestLine && character != '\n')
        {
            lines += '\n';
            m_nColumn = 0;
        }
        lines += character;
        m_nColumn = character == '\n' ? 0 : m_nColumn + 1;
    }
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    end.insertText(lines);
}

QSize CConsoleWnd::sizeHint() const
{
    const QFontMetrics metrics(font());
    const int margin = 2 * (frameWidth() + static_cast<int>(document()->documentMargin()));
    return {metrics.horizontalAdvance('0') * kColumns + margin + verticalScrollBar()->sizeHint().width(),
            metrics.lineSpacing() * kRows + margin};
}
}
