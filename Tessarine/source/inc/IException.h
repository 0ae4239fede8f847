#pragma once
#include <string>
#include <utility>

namespace tessarine
{
/// Base of every exception of the system. It carries one message, created empty.
class IException
{
public:
    IException() = default;
    IException(const IException&) = default;
    IException& operator=(const IException&) = default;
    virtual ~IException() = default;

    virtual const std::string& GetMessage() const { return m_strMessage; }

    /// Puts "( text ) " in front of the message, so that the context of the innermost level comes last.
    virtual void AddContext(const std::string& text) { m_strMessage = "( " + text + " ) " + m_strMessage; }

protected:
    explicit IException(std::string message) : m_strMessage(std::move(message)) {}

private:
    std::string m_strMessage;
};
}
