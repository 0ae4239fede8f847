#pragma once
#include "Assert.h"
#include "Console.h"
#include "ErrorLine.h"
#include "HeadlessPlatform.h"
#include <string>
#include <vector>

namespace tessarine
{
/// The platform of every test program.
HeadlessPlatform& GetTestPlatform();

/// Collects what is printed on the debug console while it lives.
class ConsoleCapture
{
public:
    ConsoleCapture();
    ~ConsoleCapture();
    ConsoleCapture(const ConsoleCapture&) = delete;
    ConsoleCapture& operator=(const ConsoleCapture&) = delete;

    /// Everything so far, as printed.
    std::string GetText();
    /// The same without line ends, a line an entry.
    std::vector<std::string> GetLines();
    /// How many lines are exactly this one.
    int Count(const std::string& line);

private:
    std::string m_strText;
    Console::Sink m_Before;
};

/// Collects the expressions of failed assertions while it lives, instead of printing them.
class AssertionCapture
{
public:
    AssertionCapture();
    ~AssertionCapture();
    AssertionCapture(const AssertionCapture&) = delete;
    AssertionCapture& operator=(const AssertionCapture&) = delete;

    const std::vector<std::string>& GetExpressions() const { return m_Expressions; }
    const std::vector<std::string>& GetPaths() const { return m_Paths; }

private:
    std::vector<std::string> m_Expressions;
    std::vector<std::string> m_Paths;
    AssertionHandler m_Before;
};

/// Collects what goes to standard error by PrintErrorLine while it lives. It is printed as well.
class ErrorLineCapture
{
public:
    ErrorLineCapture() : m_Before(SetErrorListener([this](std::string_view text) { m_strText += text; })) {}
    ~ErrorLineCapture() { SetErrorListener(m_Before); }
    ErrorLineCapture(const ErrorLineCapture&) = delete;
    ErrorLineCapture& operator=(const ErrorLineCapture&) = delete;

    const std::string& GetText() const { return m_strText; }

private:
    std::string m_strText;
    ErrorListener m_Before;
};

/// Collects the message boxes from here on.
class MessageCapture
{
public:
    MessageCapture() : m_nBefore(GetTestPlatform().GetMessages().size()) {}
    std::vector<std::string> GetTexts() const;
    std::vector<std::string> GetTitles() const;

private:
    std::size_t m_nBefore;
};
}
