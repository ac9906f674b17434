#include "host/replay/EventRecord.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <limits>
#include <random>

#include "events/AONManagerCallback.h"
#include "host/stream/RecordWriter.h"
#include "tests/recording/Recorded.h"

namespace zarvo::test {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONResult;
using Results = std::vector<AONResult>;

class Sink : public aon::IOutEventCallback {
  public:
    void OnAONEvent(AONCallBackInfo& info) override { event = info; }
    void OnAONSensorEvent(AONSensorStateInfo&) override {}
    AONCallBackInfo event;
};

/** What the service makes of a record. */
AONCallBackInfo EventOf(aov_event& record) {
    const auto sink = std::make_shared<Sink>();
    aon::AONManagerCallback::create(sink)->onCallback(&record);
    return sink->event;
}

std::unique_ptr<aov_event> Rendered(int32_t serviceTypes) {
    auto record = std::make_unique<aov_event>();
    const host::RenderConfig config{
            .width = 320, .height = 240, .frameRate = 5, .serviceTypes = serviceTypes};
    host::RenderScene(config, 12, *record);
    return record;
}

void Garble(aov_event& record) {
    std::minstd_rand random(1);
    for (uint8_t& byte : record.output)
        byte = static_cast<uint8_t>(random() >> 8U);
}

void PutFusion(aov_event& record, size_t offset, uint32_t number) {
    std::memcpy(record.output + 199'680 + offset, &number, sizeof(number));
}

TEST(EventRecord, MakesTheServiceSendTheSameAgain) {
    const struct {
        const char* name;
        int32_t serviceTypes;
        std::function<void(aov_event&)> change;
    } cases[] = {
            {"all", 15, [](aov_event&) {}},
            {"nothing", 0, [](aov_event&) {}},
            {"some", 10, [](aov_event&) {}},
            {"services without a name", -16 | 1, [](aov_event&) {}},
            {"any bytes", 15, Garble},
            {"many items", 1, [](aov_event& event) { PutFusion(event, 0, 31); }},
            {"most items", 1, [](aov_event& event) { PutFusion(event, 0, 13'107); }},
            {"too many items", 1, [](aov_event& event) { PutFusion(event, 0, 13'108); }},
            {"endless items", 1, [](aov_event& event) { PutFusion(event, 0, UINT32_MAX); }},
            {"largest id", 1, [](aov_event& event) { PutFusion(event, 8, INT32_MAX); }},
            {"no output", 15, [](aov_event& event) { event.outputSize = 0; }},
            {"fusion is cut", 15, [](aov_event& event) { event.outputSize = 202'088; }},
            {"gaze is cut", 15, [](aov_event& event) { event.outputSize = 209'176; }},
            {"angle is cut", 15, [](aov_event& event) { event.outputSize = 214'840; }},
            {"feature is cut", 15, [](aov_event& event) { event.outputSize = 227'968; }},
            {"feature alone is cut", 8, [](aov_event& event) { event.outputSize = 1; }},
            {"no image", 15, [](aov_event& event) { event.imageInfo.height = 0; }},
            {"large image", 15, [](aov_event& event) { event.imageInfo.height = 60'000; }},
            {"image that wraps", 15, [](aov_event& event) { event.imageInfo.stride = 1U << 31U; }},
    };
    for (const auto& one : cases) {
        const auto record = Rendered(one.serviceTypes);
        one.change(*record);
        const AONCallBackInfo event = EventOf(*record);
        const auto again = std::make_unique<aov_event>();
        std::memset(again.get(), 0xEE, sizeof(*again));
        EXPECT_EQ(host::WriteEventRecord(event, *again), "") << one.name;
        EXPECT_TRUE(BytesOf({EventOf(*again)}) == BytesOf({event})) << one.name;
    }
}

TEST(EventRecord, RefusesWhatNoRecordCanTell) {
    constexpr auto kFusionData = [](Results & all) -> auto& {
        return all[3]
                .value
                .get<aidl::vendor::zarvo::hardware::camera::aon::AONResultValue::Tag::floatArray>();
    };
    const struct {
        std::string error;
        std::function<void(Results&)> change;
    } cases[] = {
            {"result 0 is missing in its place", [](Results& all) { all.clear(); }},
            {"result 2 is missing in its place", [](Results& all) { all.pop_back(); }},
            {"result 999 is not possible", [](Results& all) { all.emplace_back().key = 999; }},
            {"result 101 is missing", [](Results& all) { all[1].key = 999; }},
            {"result 100 is of another type", [](Results& all) { all[0].value = 1; }},
            {"results are missing", [](Results& all) { all.insert(all.begin() + 4, all[4]); }},
            {"result 0 is missing", [](Results& all) { std::swap(all[4], all[5]); }},
            {"result 102 is not 20", [](Results& all) { all[2].value = 19; }},
            {"result 103 does not have 20 numbers", [](Results& all) { all[1].value = 40; }},
            {"result 103 does not have 20 numbers", [](Results& all) { all[1].value = 1 << 30; }},
            {"begins with no integer", [=](Results& all) { kFusionData(all)[0] = 0.5F; }},
            {"begins with no integer", [=](Results& all) { kFusionData(all)[0] = -0.0F; }},
            {"begins with no integer",
             [=](Results& all) { kFusionData(all)[0] = std::numeric_limits<float>::infinity(); }},
            {"has more than 30 items",
             [=](Results& all) {
                 kFusionData(all).assign(620, 1);
                 all[1].value = 31;
             }},
            {"result 200 has 15 values",
             [](Results& all) { all[4].value = std::vector<float>(15); }},
            {"result 400 has 0 values",
             [](Results& all) { all[6].value = std::vector<uint8_t>(); }},
            {"results are missing", [](Results& all) { all.erase(all.begin() + 5); }},
            {"result 703 is no picture", [](Results& all) { all[7].value = 319; }},
            {"result 703 is no picture", [](Results& all) { all[8].value = 241; }},
            {"result 703 is no picture",
             [](Results& all) { all[10].value = std::vector<uint8_t>(4'000'000); }},
    };
    const AONCallBackInfo good = EventOf(*Rendered(15));
    const auto record = std::make_unique<aov_event>();
    for (const auto& one : cases) {
        AONCallBackInfo event = good;
        one.change(event.results);
        const std::string error = host::WriteEventRecord(event, *record);
        EXPECT_NE(error.find(one.error), std::string::npos) << error << ", not " << one.error;
    }
    AONCallBackInfo event = good;
    event.serviceType = 7;
    EXPECT_EQ(host::WriteEventRecord(event, *record),
              "result 400 does not go with the event's service types");
}

}  // namespace
}  // namespace zarvo::test
