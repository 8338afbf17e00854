#include "app/cli/DefaultsForms.h"

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

TEST(DefaultsForms, ReadsAndPrintsTheSameForms)
{
    struct Case {
        const char *type;
        const char *text;
        const char *printed; ///< null: refused
    };
    const Case cases[] = {
        {"bool", "true", "true"},
        {"bool", "false", "false"},
        {"bool", "1", nullptr},
        {"bool", "TRUE", nullptr},
        {"int", "-9223372036854775808", "-9223372036854775808"},
        {"int", "9223372036854775808", nullptr},
        {"int", "1.0", nullptr},
        {"int", "0x10", nullptr},
        {"double", "0.1", "0.1"},
        {"double", "1e300", "1e+300"},
        {"double", "1e999", nullptr},
        {"double", "nan", nullptr},
        {"double", "inf", nullptr},
        {"double", "", nullptr},
        {"string", "", ""},
        {"string", "é \t\"", "é \t\""},
        {"data", "", ""},
        {"data", "AP8=", "AP8="},
        {"data", "AP8", nullptr},
        {"data", "AP 8=", nullptr},
        {"data", "A_8=", nullptr},
        {"date", "816945045.0383251", "816945045.0383251"},
        {"date", "-63114076800", "-63114076800"},
        {"date", "today", nullptr},
        {"strings", R"(["a","\u0000b"])", R"(["a","\u0000b"])"},
        {"strings", "[ ]", "[]"},
        {"strings", R"(["a",1])", nullptr},
        {"strings", R"({"a":"b"})", nullptr},
        {"strings", R"(["\ud800"])", nullptr},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(std::string(c.type) + " " + c.text);
        const auto value = parseDefaultsValue(QString::fromLatin1(c.type), QString::fromUtf8(c.text));
        ASSERT_EQ(value.hasValue(), c.printed != nullptr);
        if (!value) {
            EXPECT_FALSE(value.error().unknownType);
            continue;
        }
        EXPECT_EQ(defaultsText(*value).toStdString(), c.printed);
        EXPECT_EQ(defaultsTypeName(*value), QLatin1StringView(c.type));
    }
    const auto unknown = parseDefaultsValue(QStringLiteral("colour"), QStringLiteral("red"));
    ASSERT_FALSE(unknown);
    EXPECT_TRUE(unknown.error().unknownType);
}

} // namespace
} // namespace orvelle::test
