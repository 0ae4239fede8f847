#pragma once
#include <string>

namespace tessarine
{
/// A text file of a dataset, read value by value as the C library's scan formats do: any white space
/// separates, and a number ends where no more of it follows. Numbers are those of the C locale, whatever the
/// user's is.
///
/// Fails   What is no number, or none that can be used, is a Failure that names the file and the line.
class IODatasetText
{
public:
    /// Reads the file that a dataset's name means (Path.h). One that cannot be read leaves the text closed:
    /// the first read then throws FileError, which tells why.
    explicit IODatasetText(const std::string& name);

    /// The same from memory.
    /// @param name of the file, for the messages
    IODatasetText(std::string name, std::string text);

    IODatasetText(const IODatasetText&) = delete;
    IODatasetText& operator=(const IODatasetText&) = delete;

    bool IsOpen() const { return m_strError.empty(); }

    /// The file as it was found.
    const std::string& GetName() const { return m_strName; }
    /// Of the value that was read last, as an editor counts.
    int GetLine() const { return m_nLine; }
    /// No more number is longer than the text.
    std::size_t GetSize() const { return m_strText.size(); }

    /// "%d": decimal. @param meaning completes "LINE is no number: "
    int ReadDecimal(const char* meaning) { return ReadWhole(meaning, 10); }
    /// "%i": decimal, octal behind a 0, or hexadecimal behind 0x.
    int ReadInteger(const char* meaning) { return ReadWhole(meaning, 0); }
    /// "%f", rounded once to single precision. Infinity and NaN are refused.
    float ReadFloat(const char* meaning);
    /// "%lf". Infinity and NaN are refused.
    double ReadDouble(const char* meaning);
    /// "%s", dropped; of any length.
    void SkipWord(const char* meaning);

    /// Whether only white space follows.
    bool IsAtEnd();

    /// Ends the reading: Failure "FILE, line N: REASON".
    [[noreturn]] void Refuse(const std::string& reason) const;

private:
    int ReadWhole(const char* meaning, int base);
    template <class T>
    T ReadReal(const char* meaning);
    void SkipWhiteSpace();
    /// The next value's first character, which is there.
    const char* FindValue(const char* meaning);
    [[noreturn]] void RefuseValue(const char* meaning) const;

    std::string m_strName;
    std::string m_strText;
    std::string m_strError;
    const char* m_pAt = nullptr;
    int m_nLine = 1;
};
}
