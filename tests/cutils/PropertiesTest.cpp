#include <cutils/properties.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "host/cutils/PropertyParser.h"
#include "host/cutils/PropertyStore.h"
#include "tests/support/LogRecorder.h"

namespace zarvo::host {
namespace {

using std::string_view_literals::operator""sv;

TEST(Properties, BoolIsOneOfTenWordsOrTheDefault) {
    const struct {
        int whenDefaultFalse, whenDefaultTrue;
        std::vector<const char*> values;
    } kCases[] = {{1, 1, {"1", "y", "yes", "on", "true"}},
                  {0, 0, {"0", "n", "no", "off", "false"}},
                  {0, 1, {"", "TRUE", "Yes", "Y", "t", "2", " 1", "1 ", "true\n", "yess", "01"}},
                  {0, 1, {"o", "fals"}}};
    for (const auto& c : kCases) {
        for (const char* value : c.values) {
            ASSERT_EQ(property_set("test.bool", value), 0);
            EXPECT_EQ(property_get_bool("test.bool", 0), c.whenDefaultFalse) << value;
            EXPECT_EQ(property_get_bool("test.bool", 1), c.whenDefaultTrue) << value;
        }
    }
    EXPECT_EQ(property_get_bool("test.unset", 1), 1);
    EXPECT_EQ(property_get_bool(nullptr, 1), 1);
}

TEST(Properties, Int32ReadsAnyBaseAndFallsBackToTheDefault) {
    const struct {
        int32_t number;
        std::vector<const char*> values;
    } kCases[] = {{0, {"0", "09", "0x"}},
                  {12, {"12", "+12", "0xc", "014", " \t12", "12bit", "12.9", "12 2"}},
                  {-16, {"-16", "-0x10"}},
                  {2147483647, {"2147483647"}},
                  {-2147483647 - 1, {"-2147483648"}},
                  {-77, {"2147483648", "-2147483649", "99999999999999999999999"}},
                  {-77, {"-99999999999999999999999", "", " ", "-", "x1"}}};
    errno = 0;
    for (const auto& c : kCases) {
        for (const char* value : c.values) {
            ASSERT_EQ(property_set("test.int", value), 0);
            EXPECT_EQ(property_get_int32("test.int", -77), c.number) << value;
            EXPECT_EQ(errno, 0) << value;
        }
    }
    EXPECT_EQ(property_get_int32("test.unset", -77), -77);
    EXPECT_EQ(property_get_int32(nullptr, -77), -77);
}

std::string Get(const char* key, const char* otherwise) {
    std::array<char, PROPERTY_VALUE_MAX> value{"before"};
    const int length = property_get(key, value.data(), otherwise);
    EXPECT_EQ(static_cast<size_t>(length), std::strlen(value.data()));
    return value.data();
}

TEST(Properties, GetCopiesTheValueOrTheDefaultCutToTheRoom) {
    const std::string longest(91, 'v');
    ASSERT_EQ(property_set("test.text", longest.c_str()), 0);
    EXPECT_EQ(Get("test.text", "default"), longest);
    EXPECT_EQ(Get("test.unset", (longest + longest).c_str()), longest);
    EXPECT_EQ(Get("test.unset", nullptr), "");
    ASSERT_EQ(property_set("test.text", nullptr), 0);
    EXPECT_EQ(Get("test.text", "default"), "default");
}

TEST(Properties, SetRefusesWhatIsNoPropertyAndKeepsTheOldValue) {
    ASSERT_EQ(property_set("test.kept", "5"), 0);
    EXPECT_EQ(property_set("test.kept", std::string(PROPERTY_VALUE_MAX, '1').c_str()), -1);
    EXPECT_EQ(property_set("", "1"), -1);
    EXPECT_EQ(property_set(nullptr, "1"), -1);
    EXPECT_EQ(Get("test.kept", ""), "5");
    PropertyStore::Instance().setFault.FailCalls(2);
    EXPECT_EQ(property_set("test.kept", "6"), 0);
    EXPECT_EQ(property_set("test.kept", "7"), -1);
    EXPECT_EQ(Get("test.kept", ""), "6");
    PropertyStore::Instance().Clear();
    EXPECT_EQ(Get("test.kept", ""), "");
}

TEST(Properties, TheEnvironmentIsReadAtFirstUseAndItsFaultsAreLogged) {
    test::LogRecorder log("cutils");
    ASSERT_EQ(setenv("AON_PROPERTIES", "test.a=10;broken;test.b=on;=1", 1), 0);
    EXPECT_EQ(property_get_int32("test.a", 0), 10);
    EXPECT_EQ(property_get_bool("test.b", 0), 1);
    const std::vector<std::string> expected{"W: AON_PROPERTIES: pair 2: no '='",
                                            "W: AON_PROPERTIES: pair 4: not a property name"};
    EXPECT_EQ(log.TakeTexts(), expected);
    ASSERT_EQ(setenv("AON_PROPERTIES", "test.a=11", 1), 0);
    EXPECT_EQ(property_get_int32("test.a", 0), 10);
}

TEST(Properties, ManyThreadsReadWholeValuesWhileOthersWriteThem) {
    std::vector<std::thread> threads;
    for (const std::string mine : {"1111", "22222222", "1111"}) {
        threads.emplace_back([mine] {
            for (int i = 0; i < 500; ++i) {
                property_set("test.race", mine.c_str());
                const std::string read = Get("test.race", "");
                EXPECT_TRUE(read == "1111" || read == "22222222") << read;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

std::string Parsed(std::string_view text) {
    const auto [properties, errors] = ParseProperties(text);
    std::string description;
    for (const Property& property : properties)
        description += "[" + property.name + "|" + property.value + "]";
    for (const std::string& error : errors)
        description += "{" + error + "}";
    return description;
}

TEST(PropertyParser, TakesTheGoodPairsAndReportsTheOthers) {
    const std::string longName(256, 'n');
    const std::string fits(91, 'v');
    const std::pair<std::string, std::vector<std::string_view>> kCases[] = {
            {"", {"", ";;;"}},
            {"[a|1]", {"a=1", "a=1;"}},
            {"[a|1=2][b|x y][a|]", {"a=1=2;;b=x y;a="}},
            {"[v.A-b_c@0:9|1]", {"v.A-b_c@0:9=1"}},
            {"{pair 1: no '='}", {"a"}},
            {"[a|1][c|3]{pair 2: no '='}", {"a=1;b;c=3"}},
            {"[c|3]{pair 1: zero byte in value}", {"a=\0;c=3"sv}},
            {"{pair 1: not a property name}",
             {"=", " a=1", ".a=1", "a.=1", "a..b=1", "a\0b=1"sv, "\xff\xfe=1"}}};
    for (const auto& [result, texts] : kCases) {
        for (const std::string_view text : texts)
            EXPECT_EQ(Parsed(text), result) << text;
    }
    EXPECT_EQ(PropertyFault(longName.substr(1), fits), nullptr);
    EXPECT_EQ(Parsed(longName + "=1"), "{pair 1: name too long}");
    EXPECT_EQ(Parsed("a=" + fits + "v"), "{pair 1: value too long}");
}

}  // namespace
}  // namespace zarvo::host
