#include "host/replay/EventRecord.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <limits>
#include <random>

#include "fuzz/Samples.h"
#include "tests/recording/Recorded.h"

namespace zarvo::test {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONResultValue;

/** What the service makes of a record. */
AONCallBackInfo EventOf(aov_event& record) {
    return fuzz::Translation().EventOf(record);
}

void Garble(aov_event& record) {
    std::minstd_rand random(1);
    for (uint8_t& byte : record.output)
        byte = static_cast<uint8_t>(random() >> 8U);
}

void PutFusion(aov_event& record, size_t offset, uint32_t number) {
    std::memcpy(record.output + 199'680 + offset, &number, sizeof(number));
}

/** Why there is no record of the event; nothing if there is one, which then makes the same again.
 */
std::string Refusal(const AONCallBackInfo& event) {
    const auto record = std::make_unique<aov_event>();
    std::memset(record.get(), 0xEE, sizeof(*record));
    std::string error = host::WriteEventRecord(event, *record);
    if (error.empty()) {
        EXPECT_TRUE(BytesOf({EventOf(*record)}) == BytesOf({event}));
    }
    return error;
}

TEST(EventRecord, MakesTheServiceSendTheSameAgain) {
    const struct {
        const char* name;
        int32_t serviceTypes;
        std::function<void(aov_event&)> change;
    } cases[] = {
            {"all", 15, [](aov_event&) {}},
            {"nothing", 0, [](aov_event&) {}},
            {"services without a name", -16 | 1, [](aov_event&) {}},
            {"any bytes", 15, Garble},
            {"many items", 1, [](aov_event& event) { PutFusion(event, 0, 31); }},
            {"most items", 1, [](aov_event& event) { PutFusion(event, 0, 13'107); }},
            {"too many items", 1, [](aov_event& event) { PutFusion(event, 0, 13'108); }},
            {"endless items", 1, [](aov_event& event) { PutFusion(event, 0, UINT32_MAX); }},
            {"largest id", 1, [](aov_event& event) { PutFusion(event, 8, INT32_MAX); }},
            {"fusion is cut", 15, [](aov_event& event) { event.outputSize = 202'088; }},
            {"gaze is cut", 15, [](aov_event& event) { event.outputSize = 209'176; }},
            {"angle is cut", 15, [](aov_event& event) { event.outputSize = 214'840; }},
            {"feature is cut", 15, [](aov_event& event) { event.outputSize = 227'968; }},
            {"no image", 15, [](aov_event& event) { event.imageInfo.height = 0; }},
            {"large image", 15, [](aov_event& event) { event.imageInfo.height = 60'000; }},
            {"image that wraps", 15, [](aov_event& event) { event.imageInfo.stride = 1U << 31U; }},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        const auto record = fuzz::Rendered(one.serviceTypes);
        one.change(*record);
        EXPECT_EQ(Refusal(EventOf(*record)), "");
    }
}

TEST(EventRecord, TellsAnOddEventBitForBitOrNotAtAll) {
    const AONResultValue oddities[] = {19, 1 << 30, std::vector<float>(20, 0.5F),
                                       std::vector<float>(1'000'000),
                                       std::vector<uint8_t>(4'000'000)};
    const AONCallBackInfo good = EventOf(*fuzz::Rendered(15));
    for (size_t i = 0; i < good.results.size(); ++i) {
        SCOPED_TRACE(good.results[i].key);
        for (const AONResultValue& odd : oddities) {
            AONCallBackInfo event = good;
            event.results[i].value = odd;
            const std::string error = Refusal(event);
            EXPECT_TRUE(error.empty() || error.starts_with("result")) << error;
        }
    }
    AONCallBackInfo event = good;
    event.serviceType = 7;
    EXPECT_EQ(Refusal(event), "result 400 does not go with the event's service types");
    event = good;
    auto& faces = event.results[3].value.get<AONResultValue::Tag::floatArray>();
    for (const float first : {-0.0F, std::numeric_limits<float>::infinity()}) {
        faces[0] = first;
        EXPECT_EQ(Refusal(event), "result 103 has an item that begins with no integer");
    }
    event.results[1].value = 31;
    faces.assign(620, 1);
    EXPECT_EQ(Refusal(event), "result 103 has more than 30 items");
}

}  // namespace
}  // namespace zarvo::test
