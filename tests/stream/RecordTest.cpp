#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "host/stream/RecordWriter.h"
#include "host/stream/scene/Scene.h"

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
    const Record first(kConfig, 0), later(kConfig, 4'000'000'000U);
    EXPECT_TRUE(Record(kConfig, 0) == first);
    EXPECT_TRUE(Record(kConfig, 4'000'000'000U) == later);
    EXPECT_FALSE(first == later);
    RenderConfig otherSeed = kConfig;
    otherSeed.seed = 8;
    EXPECT_FALSE(Record(otherSeed, 0) == first);
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

constexpr size_t kItem = kOutput + 199'680 + 8;
constexpr size_t kAngle = kOutput + 214'784;
constexpr size_t kGaze = kOutput + 209'152;

RenderConfig With(Cast cast) {
    RenderConfig config = kConfig;
    config.cast = cast;
    return config;
}

TEST(SimulatedRecord, TellsOfTheSameFacesInEveryBlock) {
    const Record record(With(Cast::kTwo));
    EXPECT_EQ(record.At<uint32_t>(kOutput + 199'680), 2u);
    EXPECT_EQ(record.At<uint32_t>(kOutput + 199'424), 2u);
    for (const size_t item : {kItem, kItem + 80}) {
        const float left = record.Number(item + 4), right = left + record.Number(item + 12);
        const float top = record.Number(item + 8), bottom = top + record.Number(item + 16);
        EXPECT_TRUE(0 < left && left < right && right < 640);
        EXPECT_TRUE(0 < top && top < bottom && bottom < 480);
        for (size_t i = 0; i < 5; ++i) {
            const float x = record.Number(item + 24 + 8 * i), y = record.Number(item + 28 + 8 * i);
            EXPECT_TRUE(left < x && x < right && top < y && y < bottom) << i;
        }
    }
    // The other blocks speak of the first one: landmarks, head, confidence, eyes.
    const struct {
        size_t block, item, count;
    } kSame[] = {{kAngle + 16, kItem + 24, 10},
                 {kAngle, kItem + 64, 3},
                 {kAngle + 12, kItem + 20, 1},
                 {kGaze + 20, kItem + 76, 1}};
    for (const auto& same : kSame)
        EXPECT_EQ(std::memcmp(&record[same.block], &record[same.item], 4 * same.count), 0);
}

TEST(SimulatedRecord, HasNothingToSayOfNobodyButThePicture) {
    const Record record(With(Cast::kNobody));
    EXPECT_FALSE(record.IsZero(kOutput, 82'944));
    EXPECT_TRUE(record.IsZero(kOutput + 82'944, 199'684 - 82'944));
    EXPECT_NE(record.Number(kOutput + 199'684), 0.0F);
    EXPECT_TRUE(record.IsZero(kItem, 262'172 - 199'688));
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

TEST(Scene, FitsPicturesOfAnyShape) {
    for (const float aspect : {2e-6F, 0.5F, 1.0F, 3.0F, 5e5F})
        for (int frame = 0; frame < 120; ++frame) {
            const Scene scene = SceneAt(Cast::kStory, 1, frame / 2.0, aspect);
            for (size_t i = 0; i < scene.faceCount; ++i) {
                const Face& face = scene.faces[i];
                EXPECT_TRUE(0 < face.centre.x && face.centre.x < aspect) << aspect;
                EXPECT_TRUE(face.size < face.centre.y && face.centre.y < 1 - face.size) << aspect;
            }
        }
}

}  // namespace
}  // namespace zarvo::host
