#include "base/JsonReader.h"
#include "base/JsonWriter.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>

namespace orvelle {
namespace {

QByteArray nested(int levels, bool emptyInside)
{
    QByteArray open;
    QByteArray close;
    for (int i = 0; i < levels; ++i) {
        const bool innermost = i == levels - 1;
        const bool array = i % 2 == 0;
        open += array ? "[" : (innermost && emptyInside ? "{" : "{\"a\":");
        close.prepend(array ? ']' : '}');
    }
    return open + (emptyInside ? "" : "1") + close;
}

struct ParseCase {
    const char *name;
    QByteArray text;
    bool accepted;
};

TEST(JsonReader, AcceptsWhatIsJsonAndNothingElse)
{
    const ParseCase cases[] = {
        {"surrogate pair", R"(["\ud83d\ude00"])", true},
        {"high surrogate alone", R"(["\ud83d"])", false},
        {"low surrogate alone", R"(["\udc00"])", false},
        {"low before high", R"(["\udc00\ud800"])", false},
        {"two high surrogates", R"(["\ud800\ud800"])", false},
        {"high surrogate and a letter", R"(["\ud800\u0041"])", false},
        {"escaped backslash before ud800", R"(["\\ud800"])", true},
        {"surrogate as raw bytes", "[\"\xed\xa0\x80\"]", false},
        {"truncated UTF-8", "[\"\xc3\"]", false},
        {"overlong UTF-8", "[\"\xc0\xaf\"]", false},
        {"raw control character", "[\"\x01\"]", false},
        {"raw NUL between tokens", QByteArray("[1,\0 2]", 7), false},
        {"empty", "", false},
        {"blank", " \n", false},
        {"trailing text", "[1] x", false},
        {"two values", "[][]", false},
        {"trailing comma", "[1,]", false},
        {"leading zero", "[01]", false},
        {"number too big for a double", "[1e400]", false},
        {"whole number beyond 64 bits", "[123456789012345678901234]", false},
        {"NaN", "[NaN]", false},
        {"unclosed", "[{\"a\":1}", false},
        {"512 levels", nested(512, false), true},
        {"512 levels, empty inside", nested(512, true), true},
        {"513 levels", nested(513, false), false},
        {"513 levels, empty inside", nested(513, true), false},
        {"100,000 levels", QByteArray(100'000, '['), false},
        {"scalar at the root", "\"x\"", true},
    };
    for (const ParseCase &c : cases)
        EXPECT_EQ(JsonDocument::parse(c.text).hasValue(), c.accepted) << c.name;
}

TEST(JsonReader, ReadsOnlyTheAskedType)
{
    const auto document = JsonDocument::parse(
        R"({"s":"a\u0000b","i":-7,"d":1.5,"big":18446744073709551615,"t":true,"n":null,"a":[1,[],null],"o":{}})");
    ASSERT_TRUE(document);
    const JsonValue root = document->root();
    EXPECT_EQ(jsonText(root.member("s")), QString::fromLatin1("a\0b", 3));
    EXPECT_EQ(root.member("i")->asInt(), -7);
    EXPECT_EQ(root.member("i")->asDouble(), -7.0);
    EXPECT_EQ(root.member("d")->asDouble(), 1.5);
    EXPECT_EQ(root.member("d")->asInt(), std::nullopt);
    EXPECT_EQ(root.member("big")->asInt(), std::nullopt);
    EXPECT_EQ(root.member("big")->asDouble(), 18446744073709551615.0);
    EXPECT_EQ(root.member("t")->asBool(), true);
    EXPECT_EQ(root.member("t")->asInt(), std::nullopt);
    EXPECT_EQ(root.member("i")->asString(), std::nullopt);
    EXPECT_EQ(root.member("a")->size(), 3);
    EXPECT_TRUE(root.member("o")->isObject());
    EXPECT_EQ(root.member("o")->size(), 0);
    EXPECT_FALSE(root.member("n")) << "null reads as absent";
    EXPECT_FALSE(root.member("none"));
    EXPECT_FALSE(root.member("a")->forEachMember([](auto, auto) { return true; }));
    EXPECT_TRUE(JsonValue().isNull());
}

TEST(JsonReader, FirstOfRepeatedKeysCountsAndNullsAreSkipped)
{
    const auto document = JsonDocument::parse(R"({"k":null,"k":1,"k":2})");
    ASSERT_TRUE(document);
    EXPECT_EQ(document->root().member("k")->asInt(), 1);
    QStringList seen;
    EXPECT_FALSE(document->root().forEachMember([&](std::string_view key, JsonValue value) {
        seen += QString::fromUtf8(key.data(), qsizetype(key.size()));
        return !value.asInt();
    }));
    EXPECT_EQ(seen.size(), 2) << "stops at the first refusal";
}

TEST(JsonWriter, WritesInTheOrderOfTheCalls)
{
    const auto write = [](JsonWriter::Style style) {
        JsonWriter writer(style);
        writer.beginObject();
        writer.key("b");
        writer.string(QString::fromUtf8("é/\"\\\n\x01") + QChar(0) + QString::fromUtf8("😀"));
        writer.key("a");
        writer.beginArray();
        writer.number(qint64(-9007199254740993));
        writer.boolean(true);
        writer.null();
        writer.base64(QByteArray("\0\xff?", 3));
        writer.beginObject();
        writer.endObject();
        writer.endArray();
        writer.endObject();
        return writer.take();
    };
    EXPECT_EQ(write(JsonWriter::Style::Compact),
              R"({"b":"é/\"\\\n\u0001\u0000😀","a":[-9007199254740993,true,null,"AP8/",{}]})");
    EXPECT_EQ(write(JsonWriter::Style::Pretty), "{\n"
                                                "  \"b\" : \"é/\\\"\\\\\\n\\u0001\\u0000😀\",\n"
                                                "  \"a\" : [\n"
                                                "    -9007199254740993,\n"
                                                "    true,\n"
                                                "    null,\n"
                                                "    \"AP8/\",\n"
                                                "    {}\n"
                                                "  ]\n"
                                                "}");
}

TEST(JsonWriter, LoneSurrogatesBecomeTheReplacementCharacter)
{
    JsonWriter writer;
    const char16_t broken[] = {u'a', 0xd800, u'b', 0xdc00};
    writer.string(QStringView(broken, 4));
    EXPECT_EQ(writer.take(), "\"a\xef\xbf\xbd"
                             "b\xef\xbf\xbd\"");
}

TEST(JsonWriter, DoublesComeBackBitForBit)
{
    const std::pair<double, const char *> cases[] = {
        {0.0, "0"},
        {-0.0, "-0.0"},
        {785000000, "785000000"},
        {785000000.123456, "785000000.123456"},
        {-63114076800.0, "-63114076800"},
        {0.1, "0.1"},
        {1e-7, "1e-07"},
        {9007199254740993.0, "9007199254740992"},
        {18446744073709551616.0, "1.8446744073709552e+19"},
        {std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
        {std::numeric_limits<double>::denorm_min(), "5e-324"},
    };
    for (const auto &[value, expected] : cases) {
        JsonWriter writer;
        writer.number(value);
        const QByteArray text = writer.take();
        EXPECT_EQ(text, expected);
        const auto document = JsonDocument::parse(text);
        ASSERT_TRUE(document) << expected;
        EXPECT_EQ(std::bit_cast<quint64>(*document->root().asDouble()), std::bit_cast<quint64>(value)) << expected;
    }
}

} // namespace
} // namespace orvelle
