#include "host/cutils/PropertyParser.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace zarvo::host {
namespace {

using std::string_view_literals::operator""sv;

std::string Describe(std::string_view text) {
    const ParsedProperties parsed = ParseProperties(text);
    std::string description;
    for (const Property& property : parsed.properties)
        description += "[" + property.name + "|" + property.value + "]";
    for (const std::string& error : parsed.errors)
        description += "{" + error + "}";
    return description;
}

TEST(PropertyParser, TakesTheGoodPairsAndReportsTheOthers) {
    const struct {
        std::string_view text;
        std::string_view result;
    } kCases[] = {
            {"", ""},
            {";;;", ""},
            {"a=1", "[a|1]"},
            {"a=1;", "[a|1]"},
            {"a=1;;b=x y", "[a|1][b|x y]"},
            {"a=1=2", "[a|1=2]"},
            {"a=", "[a|]"},
            {"a=1;a=2", "[a|1][a|2]"},
            {"v.A-b_c@0:9=1", "[v.A-b_c@0:9|1]"},
            {"a", "{pair 1: no '='}"},
            {"=", "{pair 1: not a property name}"},
            {" a=1", "{pair 1: not a property name}"},
            {".a=1;a.=1;a..b=1",
             "{pair 1: not a property name}{pair 2: not a property name}{pair 3: not a property "
             "name}"},
            {"a\0b=1"sv, "{pair 1: not a property name}"},
            {"a=1;b;c=3", "[a|1][c|3]{pair 2: no '='}"},
            {"a=\0;c=3"sv, "[c|3]{pair 1: zero byte in value}"},
            {"\xff\xfe=1", "{pair 1: not a property name}"},
    };
    for (const auto& c : kCases)
        EXPECT_EQ(Describe(c.text), c.result) << c.text;
}

TEST(PropertyParser, HoldsTheLimitsOnLengths) {
    const std::string name(255, 'n');
    const std::string value(91, 'v');
    EXPECT_EQ(PropertyFault(name, value), nullptr);
    EXPECT_EQ(Describe(name + "n=1"), "{pair 1: name too long}");
    EXPECT_EQ(Describe("a=" + value + "v"), "{pair 1: value too long}");
}

}  // namespace
}  // namespace zarvo::host
