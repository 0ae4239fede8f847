#include "JsonText.h"
#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <nlohmann/json.hpp>

using namespace tessarine;

namespace
{
/// What write(text) leaves, without the newline at the end.
template <class TWrite>
std::string Written(TWrite write)
{
    std::string result;
    JsonText text([&result](std::string_view piece) { result += piece; });
    write(text);
    text.Finish();
    EXPECT_EQ(result.back(), '\n');
    result.pop_back();
    return result;
}

template <class T>
std::string Form(const T& value)
{
    return Written([&value](JsonText& text) { text.Put(value); });
}
}

TEST(JsonText, PutsCommasBetweenFieldsAndValues)
{
    const std::string result = Written(
        [](JsonText& text)
        {
            text.BeginObject();
            text.Field("a", 1);
            text.Field("b", std::array{1, 2, 3});
            text.Key("c");
            text.BeginObject();
            text.EndObject();
            text.Key("d");
            text.BeginArray();
            text.EndArray();
            text.Field("e", true);
            text.EndObject();
        });

    EXPECT_EQ(result, R"({"a": 1, "b": [1,2,3], "c": {}, "d": [], "e": true})");
}

TEST(JsonText, StartsALineWhereToldTo)
{
    const std::string result = Written(
        [](JsonText& text)
        {
            text.BeginArray();
            text.BeginLine(2);
            text.Put(1);
            text.BeginLine(2);
            text.BeginObject();
            text.Field("a", nullptr);
            text.EndObject();
            text.EndArray();
        });

    EXPECT_EQ(result, "[\n  1,\n  {\"a\": null}]");
}

TEST(JsonText, WritesDoublesInTheirShortestForm)
{
    EXPECT_EQ(Form(0.1), "0.1");
    EXPECT_EQ(Form(0.1 + 0.2), "0.30000000000000004");
    EXPECT_EQ(Form(1.0), "1");
    EXPECT_EQ(Form(-0.0), "-0");
    EXPECT_EQ(Form(1e300), "1e+300");
    EXPECT_EQ(Form(5e-324), "5e-324");
}

TEST(JsonText, WritesFloatsInTheShortestFormOfFloats)
{
    EXPECT_EQ(Form(0.1F), "0.1");
    EXPECT_EQ(Form(0.61237F), "0.61237");
    EXPECT_EQ(Form(16777216.0F), "16777216");
    EXPECT_EQ(Form(std::nextafter(1.0F, 2.0F)), "1.0000001");
}

TEST(JsonText, WritesWhatIsNoNumberAsAString)
{
    EXPECT_EQ(Form(std::nan("")), "\"nan\"");
    EXPECT_EQ(Form(-std::nan("")), "\"nan\"");
    EXPECT_EQ(Form(std::numeric_limits<double>::infinity()), "\"inf\"");
    EXPECT_EQ(Form(-std::numeric_limits<float>::infinity()), "\"-inf\"");
}

TEST(JsonText, WritesIntegersWhole)
{
    EXPECT_EQ(Form(std::uint32_t{0xE0000000}), "3758096384");
    EXPECT_EQ(Form(std::numeric_limits<std::int32_t>::min()), "-2147483648");
    EXPECT_EQ(Form(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
}

TEST(JsonText, WritesAMissingValueAsNull)
{
    EXPECT_EQ(Form(std::optional<std::uint32_t>()), "null");
    EXPECT_EQ(Form(std::optional<std::uint32_t>(7)), "7");
}

TEST(JsonText, EscapesWhatAStringCannotHold)
{
    EXPECT_EQ(Form("a\"b\\c/d"), R"("a\"b\\c/d")");
    EXPECT_EQ(Form("\n\r\t\x01\x1F\x7F"), "\"\\n\\r\\t\\u0001\\u001f\x7F\"");
    EXPECT_EQ(Form(std::string("a\0b", 3)), "\"a\\u0000b\"");
}

TEST(JsonText, KeepsTextOfAllAlphabets)
{
    EXPECT_EQ(Form("木\xC3\xA9\xF0\x9F\x90\xA8"), "\"木\xC3\xA9\xF0\x9F\x90\xA8\"");
}

TEST(JsonText, ReplacesBytesThatAreNoText)
{
    const std::string mark = "\xEF\xBF\xBD";
    EXPECT_EQ(Form("\xFF"), '"' + mark + '"');
    EXPECT_EQ(Form("a\x80z"), "\"a" + mark + "z\"");                            // a continuation alone
    EXPECT_EQ(Form("\xC3z"), '"' + mark + "z\"");                               // cut short
    EXPECT_EQ(Form("\xC3"), '"' + mark + '"');                                  // cut short at the end
    EXPECT_EQ(Form("\xC0\xAF"), '"' + mark + mark + '"');                       // overlong
    EXPECT_EQ(Form("\xED\xA0\x80"), '"' + mark + mark + mark + '"');            // a surrogate
    EXPECT_EQ(Form("\xF4\x90\x80\x80"), '"' + mark + mark + mark + mark + '"'); // beyond Unicode
}

TEST(JsonText, IsReadAsWhatWasWritten)
{
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
    {
        all += static_cast<char>(byte);
    }
    EXPECT_TRUE(nlohmann::json::accept(Form(all)));

    const std::string ascii = all.substr(0, 128);
    EXPECT_EQ(nlohmann::json::parse(Form(ascii)).get<std::string>(), ascii);
}

TEST(JsonText, HandsLongTextOnInPieces)
{
    std::size_t pieces = 0;
    std::size_t longest = 0;
    JsonText text(
        [&](std::string_view piece)
        {
            ++pieces;
            longest = std::max(longest, piece.size());
        });
    text.BeginArray();
    for (int i = 0; i < 100000; ++i)
    {
        text.Put(i);
    }
    text.EndArray();
    text.Finish();

    EXPECT_GT(pieces, 5U); // 589 kB
    EXPECT_LT(longest, 100000U);
}
