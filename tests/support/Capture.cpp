#include "Capture.h"
#include <algorithm>
#include <sstream>

namespace tessarine
{
HeadlessPlatform& GetTestPlatform()
{
    static HeadlessPlatform platform;
    return platform;
}

ConsoleCapture::ConsoleCapture()
    : m_Before(DebugConsole().SetSink([this](std::string_view text) { m_strText += text; }))
{
}

ConsoleCapture::~ConsoleCapture()
{
    DebugConsole().SetSink(m_Before);
}

std::string ConsoleCapture::GetText()
{
    DebugConsole().Flush();
    return m_strText;
}

std::vector<std::string> ConsoleCapture::GetLines()
{
    std::vector<std::string> lines;
    std::istringstream text(GetText());
    for (std::string line; std::getline(text, line);)
    {
        lines.push_back(line);
    }
    return lines;
}

int ConsoleCapture::Count(const std::string& line)
{
    const auto lines = GetLines();
    return static_cast<int>(std::count(lines.begin(), lines.end(), line));
}

AssertionCapture::AssertionCapture()
    : m_Before(SetAssertionHandler(
          [this](const AssertionSite& site)
          {
              m_Expressions.emplace_back(site.expression);
              m_Paths.emplace_back(site.path);
          }))
{
}

AssertionCapture::~AssertionCapture()
{
    SetAssertionHandler(m_Before);
}

std::vector<std::string> MessageCapture::GetTexts() const
{
    std::vector<std::string> texts;
    const auto& messages = GetTestPlatform().GetMessages();
    for (std::size_t i = m_nBefore; i < messages.size(); ++i)
    {
        texts.push_back(messages[i].text);
    }
    return texts;
}

std::vector<std::string> MessageCapture::GetTitles() const
{
    std::vector<std::string> titles;
    const auto& messages = GetTestPlatform().GetMessages();
    for (std::size_t i = m_nBefore; i < messages.size(); ++i)
    {
        titles.push_back(messages[i].title);
    }
    return titles;
}
}
