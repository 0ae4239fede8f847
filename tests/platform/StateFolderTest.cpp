#include "StateFolder.h"
#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace tessarine
{
namespace
{
/// A variable of the environment for the time of a test.
class Variable
{
public:
    Variable(const char* name, const char* value) : m_szName(name)
    {
        if (const char* before = std::getenv(name))
        {
            m_Before = before;
        }
        Set(value);
    }
    ~Variable() { Set(m_Before ? m_Before->c_str() : nullptr); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    void Set(const char* value) { value != nullptr ? ::setenv(m_szName, value, 1) : ::unsetenv(m_szName); }

    const char* m_szName;
    std::optional<std::string> m_Before;
};

TEST(StateFolder, IsBelowTheOneThatTheUserNames)
{
    const Variable state("XDG_STATE_HOME", "/var/state");
    EXPECT_EQ(FindStateFolder(), "/var/state/tessarine");
}

TEST(StateFolder, IsInTheHomeFolderOtherwise)
{
    const Variable home("HOME", "/home/someone");
    for (const char* useless : {static_cast<const char*>(nullptr), "", "relative/state"})
    {
        const Variable state("XDG_STATE_HOME", useless);
        EXPECT_EQ(FindStateFolder(), "/home/someone/.local/state/tessarine");
    }
}

TEST(StateFolder, IsNoneForAUserWithoutAHome)
{
    const Variable state("XDG_STATE_HOME", nullptr);
    const Variable home("HOME", nullptr);
    EXPECT_EQ(FindStateFolder(), "");
}
}
}
