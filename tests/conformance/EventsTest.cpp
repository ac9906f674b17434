#include <algorithm>
#include <map>

#include "tests/conformance/Fixture.h"

namespace conformance {
namespace {

using aon::AONResult;
using aon::AONResultValue;
using Event = Receiver::Event;
using Tag = AONResultValue::Tag;

using Events = Sensor;

/** A result as it must be: in this order, from these service types, of this kind and length. */
struct Shape {
    int32_t key;
    int32_t types;  // kAlways: not bound to a service type
    Tag tag;
    size_t length = 0;  // of an array; 0: see CheckLengths
};
constexpr int32_t kAlways = -1;
constexpr Shape kShapes[] = {
        {AONResult::RESULT_KEY_FUSION_ROTATE_ANGLE, kFusion, Tag::floatValue},
        {AONResult::RESULT_KEY_FUSION_COUNT, kFusion, Tag::intValue},
        {AONResult::RESULT_KEY_FUSION_ITEM_LENGTH, kFusion, Tag::intValue},
        {AONResult::RESULT_KEY_FUSION_DATA, kFusion, Tag::floatArray},
        {AONResult::RESULT_KEY_FACE_ANGLE, kFaceAngle, Tag::floatArray, 14},
        {AONResult::RESULT_KEY_GAZE, kGaze, Tag::floatArray, 6},
        {AONResult::RESULT_KEY_FACE_FEATURE, kFaceFeature, Tag::byteArray, 128},
        {AONResult::RESULT_KEY_IMAGE_WIDTH, kAlways, Tag::intValue},
        {AONResult::RESULT_KEY_IMAGE_HEIGHT, kAlways, Tag::intValue},
        {AONResult::RESULT_KEY_IMAGE_STRIDE, kAlways, Tag::intValue},
        {AONResult::RESULT_KEY_IMAGE_DATA, kAlways, Tag::byteArray},
        {AONResult::RESULT_KEY_FRAME_ID, kAlways, Tag::intValue},
        {AONResult::RESULT_KEY_FRAME_WIDTH, kAlways, Tag::intValue},
        {AONResult::RESULT_KEY_FRAME_HEIGHT, kAlways, Tag::intValue},
};

/** Results that come together or not at all. */
constexpr std::pair<int32_t, int32_t> kGroups[] = {
        {AONResult::RESULT_KEY_FUSION_ROTATE_ANGLE, AONResult::RESULT_KEY_FUSION_DATA},
        {AONResult::RESULT_KEY_IMAGE_WIDTH, AONResult::RESULT_KEY_IMAGE_DATA},
        {AONResult::RESULT_KEY_FRAME_ID, AONResult::RESULT_KEY_FRAME_HEIGHT},
};

/** The stream's own room for a picture; one that does not fit is cut. */
constexpr int64_t kPictureRoom = 737'316;
constexpr int32_t kItemLength = 20;
/** Of a count beyond the first, only the data of the second is there. */
constexpr int32_t kMaxItems = 13'107;
constexpr int64_t kItemsBeyond = 30;

using Values = std::map<int32_t, const AONResultValue*>;

int32_t IntOf(const Values& values, int32_t key) {
    return values.at(key)->get<Tag::intValue>();
}

void CheckFusion(const Values& values) {
    const int32_t count = IntOf(values, AONResult::RESULT_KEY_FUSION_COUNT);
    EXPECT_EQ(IntOf(values, AONResult::RESULT_KEY_FUSION_ITEM_LENGTH), kItemLength);
    const int64_t items = count < 0 || count > kMaxItems ? kItemsBeyond : count;
    EXPECT_EQ(values.at(AONResult::RESULT_KEY_FUSION_DATA)->get<Tag::floatArray>().size(),
              static_cast<size_t>(items * kItemLength))
            << count << " faces";
}

void CheckPicture(const Values& values) {
    const int32_t stride = IntOf(values, AONResult::RESULT_KEY_IMAGE_STRIDE);
    const int32_t height = IntOf(values, AONResult::RESULT_KEY_IMAGE_HEIGHT);
    EXPECT_GT(stride, 0);
    EXPECT_GT(height, 0);
    EXPECT_EQ(IntOf(values, AONResult::RESULT_KEY_IMAGE_WIDTH), stride);
    const int64_t bytes = std::min(int64_t{stride} * height * 3 / 2, kPictureRoom);
    EXPECT_EQ(values.at(AONResult::RESULT_KEY_IMAGE_DATA)->get<Tag::byteArray>().size(),
              static_cast<size_t>(bytes))
            << "stride " << stride << ", height " << height;
}

size_t LengthOf(const AONResultValue& value) {
    switch (value.getTag()) {
        case Tag::byteArray:
            return value.get<Tag::byteArray>().size();
        case Tag::floatArray:
            return value.get<Tag::floatArray>().size();
        default:
            return 0;
    }
}

/** Checks one result and that it comes after those before; unknown keys are passed over. */
void CheckResult(const AONResult& result, int32_t types, const Shape** next, Values* values) {
    const Shape* const shape =
            std::find_if(std::begin(kShapes), std::end(kShapes),
                         [&](const Shape& candidate) { return candidate.key == result.key; });
    if (shape == std::end(kShapes)) return;
    ASSERT_GE(shape, *next) << "key " << result.key << " comes twice, or too late";
    *next = shape + 1;
    ASSERT_EQ(result.value.getTag(), shape->tag) << "key " << result.key;
    EXPECT_TRUE(shape->types == kAlways || (types & shape->types) != 0)
            << "key " << result.key << " in an event of types " << types;
    EXPECT_TRUE(shape->length == 0 || LengthOf(result.value) == shape->length)
            << "key " << result.key << " has " << LengthOf(result.value);
    (*values)[result.key] = &result.value;
}

/** Checks an event that may carry results of these service types. */
void Check(const Event& event, int32_t running) {
    EXPECT_EQ(event.serviceType & ~running, 0) << "nobody started these types";
    const Shape* next = kShapes;
    Values values;
    for (const AONResult& result : event.results)
        ASSERT_NO_FATAL_FAILURE(CheckResult(result, event.serviceType, &next, &values));
    for (const auto& [first, last] : kGroups) {
        const auto is = [&](int32_t key) { return values.count(key) != 0; };
        for (int32_t key = first; key <= last; ++key)
            ASSERT_EQ(is(key), is(first)) << "key " << key << ", and " << first;
    }
    ASSERT_EQ(values.count(AONResult::RESULT_KEY_FRAME_ID), 1U);
    if (values.count(AONResult::RESULT_KEY_FUSION_DATA) != 0) CheckFusion(values);
    if (values.count(AONResult::RESULT_KEY_IMAGE_DATA) != 0) CheckPicture(values);
}

class EventsOf : public Sensor, public testing::WithParamInterface<int32_t> {};

TEST_P(EventsOf, TheStartedTypesAreAsTheInterfaceSays) {
    Client client(service);
    ASSERT_NO_FATAL_FAILURE(Run(client, kAllTypes, GetParam()));
    // One that was on its way to the client before may still come first.
    int32_t running = kAllTypes;
    for (int round = 0; round < 3; ++round) {
        const auto events = client.receiver->AwaitEvent();
        ASSERT_FALSE(events.empty()) << "no event came";
        for (const Event& event : events)
            Check(event, std::exchange(running, GetParam()));
    }
    EXPECT_EQ(client.receiver->Handles(), std::vector<int64_t>{client.handle});
    EXPECT_EQ(client.Stop(GetParam()), kOk);
}

INSTANTIATE_TEST_SUITE_P(Types, EventsOf,
                         testing::Values(kFusion, kFaceAngle, kGaze, kFaceFeature, kFusion | kGaze,
                                         kAllTypes),
                         testing::PrintToStringParamName());

TEST_F(Events, GoOnWithWhatIsLeftAfterAPartIsStopped) {
    Client client(service);
    ASSERT_NO_FATAL_FAILURE(Run(client, kAllTypes, kFusion | kFaceAngle));
    EXPECT_FALSE(client.receiver->AwaitEvent().empty());
    ASSERT_EQ(client.Stop(kFusion), kOk);
    // One of the old set may still be on its way.
    const auto isOfTheRest = [](const Event& event) { return (event.serviceType & kFusion) == 0; };
    ASSERT_FALSE(client.receiver->AwaitEvent(isOfTheRest).empty());
    for (int round = 0; round < 3; ++round) {
        const auto events = client.receiver->AwaitEvent();
        ASSERT_FALSE(events.empty()) << "no event came";
        for (const Event& event : events)
            Check(event, kFaceAngle);
    }
}

TEST_F(Events, EndWithAStopAndComeBackWithAStart) {
    Client client(service);
    ASSERT_NO_FATAL_FAILURE(Run(client, kAllTypes, kAllTypes));
    for (int round = 0; round < 5; ++round) {
        // One of the run before may still be on its way.
        ASSERT_FALSE(client.receiver->AwaitEvent().empty()) << "no event came";
        ASSERT_FALSE(client.receiver->AwaitEvent().empty()) << "no second event came";
        ASSERT_EQ(client.Stop(kAllTypes), kOk);
        ASSERT_EQ(client.Start(kAllTypes), kOk);
    }
    EXPECT_EQ(client.receiver->TakeStates().size(), 10U);
}

}  // namespace
}  // namespace conformance
