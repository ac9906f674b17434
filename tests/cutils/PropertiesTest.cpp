#include <cutils/properties.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "host/cutils/PropertyStore.h"
#include "tests/support/LogRecorder.h"

using zarvo::host::PropertyStore;

namespace {

TEST(Properties, BoolIsOneOfTenWordsOrTheDefault) {
    const struct {
        const char* value;
        int whenDefaultFalse;
        int whenDefaultTrue;
    } kCases[] = {
            {"1", 1, 1},  {"y", 1, 1},    {"yes", 1, 1},  {"on", 1, 1},     {"true", 1, 1},
            {"0", 0, 0},  {"n", 0, 0},    {"no", 0, 0},   {"off", 0, 0},    {"false", 0, 0},
            {"", 0, 1},   {"TRUE", 0, 1}, {"Yes", 0, 1},  {"Y", 0, 1},      {"t", 0, 1},
            {"2", 0, 1},  {" 1", 0, 1},   {"1 ", 0, 1},   {"true\n", 0, 1}, {"yess", 0, 1},
            {"01", 0, 1}, {"o", 0, 1},    {"fals", 0, 1},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.value);
        ASSERT_EQ(property_set("test.bool", c.value), 0);
        EXPECT_EQ(property_get_bool("test.bool", 0), c.whenDefaultFalse);
        EXPECT_EQ(property_get_bool("test.bool", 1), c.whenDefaultTrue);
    }
    EXPECT_EQ(property_get_bool("test.unset", 1), 1);
    EXPECT_EQ(property_get_bool(nullptr, 1), 1);
}

TEST(Properties, Int32ReadsAnyBaseAndFallsBackToTheDefault) {
    constexpr int32_t kDefault = -77;
    const struct {
        const char* value;
        int32_t number;
    } kCases[] = {
            {"0", 0},
            {"10", 10},
            {"-12", -12},
            {"+12", 12},
            {"0x2019", 0x2019},
            {"-0x10", -16},
            {"010", 8},
            {"09", 0},
            {"0x", 0},
            {" \t7", 7},
            {"8bit", 8},
            {"2.9", 2},
            {"1 2", 1},
            {"2147483647", 2147483647},
            {"-2147483648", -2147483647 - 1},
            {"2147483648", kDefault},
            {"-2147483649", kDefault},
            {"99999999999999999999999", kDefault},
            {"-99999999999999999999999", kDefault},
            {"", kDefault},
            {" ", kDefault},
            {"-", kDefault},
            {"x1", kDefault},
    };
    errno = 0;
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.value);
        ASSERT_EQ(property_set("test.int", c.value), 0);
        EXPECT_EQ(property_get_int32("test.int", kDefault), c.number);
        EXPECT_EQ(errno, 0);
    }
    EXPECT_EQ(property_get_int32("test.unset", kDefault), kDefault);
    EXPECT_EQ(property_get_int32(nullptr, kDefault), kDefault);
}

TEST(Properties, GetCopiesTheValueOrTheDefaultCutToTheRoom) {
    std::array<char, PROPERTY_VALUE_MAX> value{};
    const std::string longest(PROPERTY_VALUE_MAX - 1, 'v');

    ASSERT_EQ(property_set("test.text", longest.c_str()), 0);
    EXPECT_EQ(property_get("test.text", value.data(), "default"), 91);
    EXPECT_EQ(value.data(), longest);
    EXPECT_EQ(property_get("test.unset", value.data(), (longest + longest).c_str()), 91);
    EXPECT_EQ(value.data(), longest);
    EXPECT_EQ(property_get("test.unset", value.data(), nullptr), 0);
    EXPECT_STREQ(value.data(), "");
    ASSERT_EQ(property_set("test.text", nullptr), 0);
    EXPECT_EQ(property_get("test.text", value.data(), "default"), 7);
    EXPECT_STREQ(value.data(), "default");
}

TEST(Properties, SetRefusesWhatIsNoPropertyAndKeepsTheOldValue) {
    ASSERT_EQ(property_set("test.kept", "5"), 0);
    const std::string tooLong(PROPERTY_VALUE_MAX, '1');
    EXPECT_EQ(property_set("test.kept", tooLong.c_str()), -1);
    EXPECT_EQ(property_set("", "1"), -1);
    EXPECT_EQ(property_set(nullptr, "1"), -1);
    PropertyStore::Instance().setFault.FailCalls(2);
    EXPECT_EQ(property_set("test.kept", "6"), 0);
    EXPECT_EQ(property_set("test.kept", "7"), -1);
    EXPECT_EQ(property_get_int32("test.kept", 0), 6);
    PropertyStore::Instance().Clear();
    EXPECT_EQ(property_get_int32("test.kept", 0), 0);
}

TEST(Properties, TheEnvironmentIsReadAtFirstUseAndItsFaultsAreLogged) {
    zarvo::test::LogRecorder log("cutils");
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
    const std::string values[] = {"1111", "22222222"};
    ASSERT_EQ(property_set("test.race", values[0].c_str()), 0);
    std::vector<std::thread> threads;
    for (const std::string& mine : values) {
        threads.emplace_back([&mine] {
            for (int i = 0; i < 500; ++i)
                property_set("test.race", mine.c_str());
        });
        threads.emplace_back([&values] {
            std::array<char, PROPERTY_VALUE_MAX> value{};
            for (int i = 0; i < 500; ++i) {
                property_get("test.race", value.data(), "");
                EXPECT_TRUE(value.data() == values[0] || value.data() == values[1]);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

}  // namespace
