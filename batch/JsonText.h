#pragma once
#include <array>
#include <concepts>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessarine
{
/// JSON written piece by piece and handed on in large pieces, so that a text of any length takes little
/// memory.
///
/// Numbers are in shortest round-trip form, floats as floats; "nan", "inf" and "-inf" are strings. Bytes of a
/// string that are no UTF-8 become U+FFFD. The caller keeps to the grammar; commas come by themselves.
class JsonText
{
public:
    using Sink = std::function<void(std::string_view)>;

    explicit JsonText(Sink sink);

    void BeginObject() { Begin('{'); }
    void EndObject() { End('}'); }
    void BeginArray() { Begin('['); }
    void EndArray() { End(']'); }

    /// The next value or closing bracket starts a line, indented by this many blanks.
    void BeginLine(int indent);

    /// The name of the next value.
    void Key(std::string_view name);

    template <class T>
    void Field(std::string_view name, const T& value)
    {
        Key(name);
        Put(value);
    }

    void Put(std::nullptr_t) { Plain("null"); }
    void Put(double value);
    void Put(float value);
    void Put(std::string_view text);
    void Put(const std::string& text) { Put(std::string_view(text)); }
    void Put(const char* text) { Put(std::string_view(text)); }

    template <std::same_as<bool> T>
    void Put(T value)
    {
        Plain(value ? "true" : "false");
    }

    template <std::integral T>
    requires(!std::same_as<T, bool> && !std::same_as<T, char>) void Put(T value)
    {
        if constexpr (std::is_signed_v<T>)
        {
            PutInteger(value);
        }
        else
        {
            PutUnsigned(value);
        }
    }

    template <class T>
    void Put(const std::optional<T>& value)
    {
        value ? Put(*value) : Put(nullptr);
    }

    template <class T, std::size_t count>
    void Put(const std::array<T, count>& values)
    {
        PutAll(values);
    }

    template <class T>
    void Put(const std::vector<T>& values)
    {
        PutAll(values);
    }

    /// Ends the text with a newline and hands on what is left.
    void Finish();

private:
    void Begin(char bracket);
    void End(char bracket);
    void Separate(std::string_view separator);
    void StartLine(int indent);
    void Plain(std::string_view text);
    void PutInteger(long long value);
    void PutUnsigned(unsigned long long value);
    template <class T>
    void PutReal(T value);
    void PutQuoted(std::string_view text);
    void PutEscaped(char character);
    void HandOnIfMuch();

    template <class TRange>
    void PutAll(const TRange& values)
    {
        BeginArray();
        for (const auto& value : values)
        {
            Put(value);
        }
        EndArray();
    }

    Sink m_Sink;
    std::string m_strPending;
    bool m_bFirst = true;      ///< nothing stands before the next value in its object or array
    bool m_bBehindKey = false; ///< the next value belongs to a key
    int m_nIndent = -1;        ///< of the line that the next value starts; -1 for none
};
}
