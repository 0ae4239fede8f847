#include "BatchProcess.h"
#include <fstream>
#include <gmock/gmock.h>
#include <utility>

namespace tessarine
{
namespace
{
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr char kPackages[] =
    "# What is needed.\n[build]\n# to build\ncompiler\nlibrary\n[run]\n# to draw\npainter\n"
    "[test]\n# to test\nchecker\n";
constexpr char kUnresolved[] = "E: Failed to fetch http://deb/InRelease  Temporary failure resolving";

/// A machine on which the one package `library` is installed, all of whose programs are links and stubs.
class PackageInstallation : public testing::Test
{
protected:
    PackageInstallation()
    {
        m_Folder.Write("packages", kPackages);
        m_Folder.Write("bin/keep", "");
        for (const char* program : {"awk", "env", "grep", "true"})
        {
            std::filesystem::create_symlink(std::filesystem::path("/usr/bin") / program,
                                            m_Folder / "bin" / program);
        }
        WriteProgram("dpkg-query", "case $3 in library) printf installed ;; *) exit 1 ;; esac");
        WriteProgram("df", "echo Filesystem Size Used Avail; case $2 in /usr) echo usr 9G 9G 7M ;; *) echo "
                           "var 9G 9G 3M ;; esac");
        WriteProgram("id", "echo 0");
        WriteAptGet("true", "true");
    }

    void WriteProgram(const std::string& name, const std::string& script) const
    {
        const auto path = m_Folder.Write("bin/" + name, "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    }

    /// Notes its words, then does one or the other.
    void WriteAptGet(const std::string& update, const std::string& install) const
    {
        WriteProgram("apt-get", "echo \"$*\" >>calls\ncase \"$*\" in *update) " + update + " ;; *) " +
                                    install + " ;; esac");
    }

    ProcessResult Install(const std::string& groups) const
    {
        return RunProgram(
            "/usr/bin/env", m_Folder,
            {"PATH=" + (m_Folder / "bin").string(), "/bin/bash", "-c",
             "set -u; . '" TESSARINE_PREPARE "'; install_missing " + groups + "; echo installed"});
    }

    /// Expects a failure that ends in this one sentence.
    void ExpectFailure(const std::string& sentence) const
    {
        const ProcessResult result = Install("build");
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.errors, "tessarine: " + sentence + "\n");
    }

    TemporaryFolder m_Folder;
};

TEST_F(PackageInstallation, SaysWhatItInstallsAndWhyAndAsksOnce)
{
    const ProcessResult result = Install("build run test");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "== Installing Debian packages to build (1): compiler\n"
                             "== Installing Debian packages to draw (1): painter\n"
                             "== Installing Debian packages to test (1): checker\n"
                             "installed\n");
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_EQ(m_Folder.Read("calls"), "-qq -o APT::Update::Error-Mode=any update\n"
                                      "-qq install -y --no-install-recommends compiler painter checker\n");
}

TEST_F(PackageInstallation, LeavesAptGetAloneWhereNothingIsMissing)
{
    WriteProgram("dpkg-query", "printf installed");
    EXPECT_EQ(Install("build run test").output, "installed\n");
    EXPECT_FALSE(m_Folder.Has("calls"));
}

TEST_F(PackageInstallation, NamesTheNetworkWhereListsCannotBeFetched)
{
    WriteAptGet("echo '" + std::string(kUnresolved) + "'; exit 100",
                "echo 'E: Unable to locate package compiler'; exit 100");
    ExpectFailure("the packages cannot be fetched: see to the network and run this again; apt-get says: " +
                  std::string(kUnresolved));
}

TEST_F(PackageInstallation, NamesTheNetworkWherePackagesCannotBeFetched)
{
    WriteAptGet("true", "echo 'Selecting compiler'; echo '" + std::string(kUnresolved) + "'; exit 100");
    ExpectFailure("the packages cannot be fetched: see to the network and run this again; apt-get says: " +
                  std::string(kUnresolved));
}

TEST_F(PackageInstallation, DoesWithOldListsWhereTheyCannotBeFetched)
{
    WriteAptGet("echo '" + std::string(kUnresolved) + "'; exit 100", "true");
    const ProcessResult result = Install("build");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, EndsWith("installed\n"));
    EXPECT_THAT(result.errors, IsEmpty());
}

TEST_F(PackageInstallation, TellsWhatEndedTheInstallationAlsoBehindListsThatCannotBeFetched)
{
    WriteAptGet("echo '" + std::string(kUnresolved) + "'; exit 100",
                "echo 'E: Could not get lock'; exit 100");
    ExpectFailure("the packages cannot be installed: see to what apt-get says and run this again: E: Could "
                  "not get lock");
}

TEST_F(PackageInstallation, TellsTheFreeSpaceOfADiskThatWasFullForTheLists)
{
    WriteAptGet("echo 'E: Write error - write (28: No space left on device)'; exit 100",
                "echo 'E: Unable to locate package compiler'; exit 100");
    ExpectFailure("the disk is full: make room for the packages and run this again (free space: 7M in "
                  "/usr, 3M in /var)");
}

TEST_F(PackageInstallation, TellsTheFreeSpaceOfAFullDisk)
{
    const std::string sentence =
        "the disk is full: make room for the packages and run this again (free space: 7M in "
        "/usr, 3M in /var)";
    WriteAptGet("true",
                "echo \"E: You don't have enough free space in /var/cache/apt/archives/.\"; exit 100");
    ExpectFailure(sentence);
    WriteAptGet(
        "true",
        "echo ' failed to write (No space left on device)'; echo 'E: Sub-process returned 1'; exit 100");
    ExpectFailure(sentence);
}

TEST_F(PackageInstallation, PassesOnWhatElseAptGetSays)
{
    WriteAptGet("true", "echo 'W: a warning'; echo 'E: Could not get lock'; echo 'E: more'; exit 100");
    ExpectFailure("the packages cannot be installed: see to what apt-get says and run this again: E: Could "
                  "not get lock");
    WriteAptGet("true", "echo first; echo 'died of a signal'; exit 137");
    ExpectFailure(
        "the packages cannot be installed: see to what apt-get says and run this again: died of a signal");
}

TEST_F(PackageInstallation, TakesSudoForAUserWhoIsNotRoot)
{
    WriteProgram("id", "echo 1000");
    WriteProgram("sudo", "echo \"$*\" >>sudo-calls; exec \"$@\"");
    EXPECT_EQ(Install("build").status, 0);
    EXPECT_THAT(m_Folder.Read("sudo-calls"),
                HasSubstr("apt-get -qq install -y --no-install-recommends compiler\n"));
    EXPECT_THAT(m_Folder.Read("calls"), EndsWith("compiler\n"));
}

TEST_F(PackageInstallation, SaysThatSudoRefuses)
{
    WriteProgram("id", "echo 1000");
    WriteProgram("sudo", "exit 1");
    ExpectFailure("sudo refuses: run this as root, or install these packages by hand: compiler");
    EXPECT_FALSE(m_Folder.Has("calls"));
}

TEST_F(PackageInstallation, SaysThatSudoOrAptGetIsMissing)
{
    WriteProgram("id", "echo 1000");
    ExpectFailure("run this as root, or install sudo, or install these packages by hand: compiler");
    std::filesystem::remove(m_Folder / "bin/apt-get");
    ExpectFailure("there is no apt-get here: install these packages by hand: compiler");
}

TEST_F(PackageInstallation, NeedsNoTemporaryFiles)
{
    WriteProgram("mktemp", "echo 'mktemp: No space left on device' >&2; exit 1");
    EXPECT_EQ(Install("build").status, 0);
}

TEST(PackageList, SaysWhatEachGroupIsFor)
{
    std::ifstream list(TESSARINE_PACKAGES);
    std::string line;
    int groups = 0;
    while (std::getline(list, line))
    {
        if (line.starts_with('['))
        {
            ++groups;
            const std::string group = std::exchange(line, "");
            EXPECT_TRUE(std::getline(list, line) && line.starts_with("# to ")) << group;
        }
    }
    EXPECT_GT(groups, 0);
}
}
}
