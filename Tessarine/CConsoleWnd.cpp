#include "CConsoleWnd.h"
#include <QFontDatabase>
#include <QScrollBar>
#include <algorithm>

namespace tessarine
{
namespace
{
constexpr int kColumns = 80;
constexpr int kRows = 25;

/// The end of a text that the window can show: thousands of lines at once cost no more than a window full.
std::string_view KeepLastLines(std::string_view text)
{
    std::size_t begin = text.size();
    for (int lines = 0; lines < CConsoleWnd::kLineCount && begin != 0; ++lines)
    {
        const std::size_t end = text.rfind('\n', begin - 1);
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
}

void CConsoleWnd::Append(std::string_view text)
{
    const std::string_view shown = KeepLastLines(text);
    QString characters = m_Decoder(QByteArrayView(shown.data(), static_cast<qsizetype>(shown.size())));
    characters.remove('\r');
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    end.insertText(characters);
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    if (isVisible())
    {
        viewport()->repaint();
    }
}

QSize CConsoleWnd::sizeHint() const
{
    const QFontMetrics metrics(font());
    const int margin = 2 * (frameWidth() + static_cast<int>(document()->documentMargin()));
    return {metrics.horizontalAdvance('0') * kColumns + margin + verticalScrollBar()->sizeHint().width(),
            metrics.lineSpacing() * kRows + margin};
}
}
