#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <set>
#include <vector>

#include "host/stream/RecordWriter.h"

namespace zarvo::host {
namespace {

constexpr RenderConfig kConfig{
        .seed = 7, .width = 640, .height = 480, .frameRate = 5, .serviceTypes = 15};
constexpr size_t kOutput = 34'856;

/** A rendered record as bare bytes, which all offsets here count from. */
struct Record : std::vector<uint8_t> {
    explicit Record(const RenderConfig& config, uint32_t frame = 12) {
        const auto event = std::make_unique<aov_event>();
        // What a record held before must not shine through.
        std::memset(event.get(), 0xA5, sizeof(aov_event));
        RenderScene(config, frame, *event);
        const auto* bytes = reinterpret_cast<const uint8_t*>(event.get());
        assign(bytes, bytes + 1'771'684);
    }
    template <typename T>
    T At(size_t offset) const {
        T value;
        std::memcpy(&value, data() + offset, sizeof(value));
        return value;
    }
    float Number(size_t offset) const { return At<float>(offset); }
    bool IsZero(size_t offset, size_t size) const {
        return static_cast<size_t>(std::count(data() + offset, data() + offset + size, 0)) == size;
    }
};

TEST(SimulatedRecord, DependsOnSeedAndFrameAlone) {
    RenderConfig otherSeed = kConfig;
    otherSeed.seed = 8;
    EXPECT_TRUE(Record(kConfig, 3) == Record(kConfig, 3));
    EXPECT_FALSE(Record(kConfig, 3) == Record(kConfig, 4));
    EXPECT_FALSE(Record(kConfig, 3) == Record(otherSeed, 3));
}

TEST(SimulatedRecord, CarriesFrameAndImageHeaders) {
    const Record record(kConfig, 4'000'000'000U);
    const std::pair<size_t, uint32_t> kWords[] = {
            {8, 4'000'000'000U}, {12, 640},      {16, 480},      {24, 15},
            {34'852, 228'096},   {297'028, 480}, {297'036, 640}, {1'034'356, 480},
            {1'034'364, 640}};
    for (const auto& [offset, value] : kWords)
        EXPECT_EQ(record.At<uint32_t>(offset), value) << offset;
}

TEST(SimulatedRecord, FillsTheRegionsOfTheStartedServicesAndNoOther) {
    const struct {
        size_t offset, size;
        int32_t serviceTypes;  // any of these; 0 for every record
        size_t distinct;       // at least so many byte values, so that it is not a flat fill
    } kRegions[] = {
            {0, 82'944, 0, 60},      {82'944, 5'184, 0, 40},  {88'320, 1'296, 0, 40},
            {89'856, 324, 0, 20},    {90'368, 82'944, 0, 60}, {173'312, 20'736, 0, 60},
            {194'048, 5'184, 0, 40}, {199'424, 4, 0, 2},      {199'680, 88, 1, 20},
            {202'240, 6'272, 0, 5},  {208'640, 4, 4, 3},      {208'896, 2, 4, 1},
            {209'152, 24, 4, 12},    {209'408, 4'096, 2, 8},  {213'504, 1, 2, 1},
            {213'760, 1, 2, 1},      {214'016, 1, 2, 1},      {214'272, 1, 2, 1},
            {214'528, 10, 2, 4},     {214'784, 56, 2, 20},    {215'040, 12'544, 8, 8},
            {227'584, 128, 8, 40},   {227'840, 128, 8, 40},
    };
    for (int32_t types = 0; types <= 15; ++types) {
        RenderConfig config = kConfig;
        config.serviceTypes = types;
        const Record record(config);
        for (const auto& region : kRegions) {
            SCOPED_TRACE(std::to_string(types) + " " + std::to_string(region.offset));
            const uint8_t* bytes = record.data() + kOutput + region.offset;
            const std::set<uint8_t> values(bytes, bytes + region.size);
            const bool filled = region.serviceTypes == 0 || (types & region.serviceTypes) != 0;
            EXPECT_EQ(values != std::set<uint8_t>{0}, filled);
            EXPECT_GE(values.size(), filled ? region.distinct : 1);
        }
        EXPECT_TRUE(record.IsZero(kOutput + 227'968, 262'172 - 227'968));
    }
}

TEST(SimulatedRecord, TellsOneStoryInEveryBlock) {
    const Record record(kConfig);
    constexpr size_t kItem = kOutput + 199'680 + 8;
    constexpr size_t kAngle = kOutput + 214'784;
    constexpr size_t kGaze = kOutput + 209'152;

    EXPECT_EQ(record.At<uint32_t>(kOutput + 199'680), 1u);
    EXPECT_NE(record.Number(kOutput + 199'684), 0.0F);
    EXPECT_EQ(record.At<int32_t>(kItem), 1);
    const float left = record.Number(kItem + 4), top = record.Number(kItem + 8);
    const float right = left + record.Number(kItem + 12), bottom = top + record.Number(kItem + 16);
    EXPECT_TRUE(0 < left && left < right && right < 640 && 0 < top && top < bottom && bottom < 480);
    for (size_t i = 0; i < 5; ++i) {
        const float x = record.Number(kItem + 24 + 8 * i), y = record.Number(kItem + 28 + 8 * i);
        EXPECT_TRUE(left < x && x < right && top < y && y < bottom) << i;
        EXPECT_EQ(record.Number(kAngle + 16 + 8 * i), x);
        EXPECT_EQ(record.Number(kAngle + 20 + 8 * i), y);
    }
    for (size_t i = 0; i < 3; ++i)
        EXPECT_EQ(record.Number(kAngle + 4 * i), record.Number(kItem + 64 + 4 * i)) << i;
    EXPECT_EQ(record.Number(kGaze + 20), record.Number(kItem + 76));
    EXPECT_NEAR(
            std::hypot(record.Number(kGaze), record.Number(kGaze + 4), record.Number(kGaze + 8)), 1,
            1e-5);
    EXPECT_EQ(record.At<uint8_t>(kOutput + 213'504),
              static_cast<uint8_t>(std::floor(128.5F + record.Number(kAngle))));
    const uint8_t* output = record.data() + kOutput;
    EXPECT_TRUE(std::equal(output + 227'584, output + 227'584 + 128, output + 227'840));

    // The debug picture is the same but for marks inside the face's box.
    size_t marked = 0;
    for (size_t i = 0; i < size_t{640} * 480; ++i) {
        if (record[297'040 + i] == record[1'034'368 + i]) continue;
        const size_t row = i / 640;
        const auto x = static_cast<float>(i % 640), y = static_cast<float>(row);
        ASSERT_TRUE(left <= x && x <= right && top <= y && y <= bottom) << x << " " << y;
        ++marked;
    }
    EXPECT_GT(marked, 500u);
}

TEST(SimulatedRecord, MovesSmoothlyAndKeepsTheFaceItself) {
    RenderConfig config = kConfig;
    config.frameRate = 30;
    std::set<float> yaws;
    Record before(config, 0);
    for (uint32_t frame = 1; frame <= 90; ++frame) {
        Record record(config, frame);
        const float yaw = record.Number(kOutput + 214'784);
        EXPECT_NEAR(yaw, before.Number(kOutput + 214'784), 3.0F) << frame;
        yaws.insert(std::round(yaw));
        for (size_t i = kOutput + 227'840; i < kOutput + 227'840 + 128; ++i)
            EXPECT_NEAR(record[i], before[i], 2);
        before = std::move(record);
    }
    EXPECT_GT(yaws.size(), 5u);
}

TEST(SimulatedRecord, HoldsEverySizeThatFitsAndWritesNothingBeyondIt) {
    const struct {
        int64_t width, height;
        bool fits;
    } kSizes[] = {{1, 1, true},       {3, 5, true},       {320, 240, true},
                  {491'544, 1, true}, {1, 491'544, true}, {701, 701, true},
                  {640, 768, true},   {640, 769, false},  {491'545, 1, false},
                  {0, 480, false},    {640, -1, false},   {1 << 30, 1 << 30, false}};
    for (const auto& size : kSizes) {
        SCOPED_TRACE(std::to_string(size.width) + "x" + std::to_string(size.height));
        ASSERT_EQ(FitsRecord(size.width, size.height), size.fits);
        if (!size.fits) continue;
        RenderConfig config = kConfig;
        config.width = static_cast<int32_t>(size.width);
        config.height = static_cast<int32_t>(size.height);
        const Record record(config);
        const auto bytes = static_cast<size_t>(size.width * size.height * 3 / 2);
        EXPECT_FALSE(record.IsZero(297'040, bytes));
        EXPECT_TRUE(record.IsZero(297'040 + bytes, 737'316 - bytes));
        EXPECT_TRUE(record.IsZero(1'034'368 + bytes, 737'316 - bytes));
    }
}

}  // namespace
}  // namespace zarvo::host
