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

/** A result as it must be: in this order, from these service types, of this kind. Those of one
 * hundred come together or not at all. */
struct Shape {
    int32_t key;
    int32_t types;  // kAlways: not bound to a service type
    Tag tag;
    int64_t length = 0;  // of an array; 0: see CheckFusion and CheckPicture
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

/** The stream's own room for a picture; one that does not fit is cut. */
constexpr int64_t kPictureRoom = 737'316;
constexpr int32_t kItemLength = 20;
/** Of a count beyond the first, only the data of the second is there. */
constexpr int32_t kMaxItems = 13'107;
constexpr int64_t kItemsBeyond = 30;

using Values = std::map<int32_t, AONResultValue>;

int32_t Int(const Values& values, int32_t key) {
    return values.at(key).get<Tag::intValue>();
}

/** Of an array. */
int64_t Length(const AONResultValue& value) {
    return static_cast<int64_t>(value.getTag() == Tag::byteArray
                                        ? value.get<Tag::byteArray>().size()
                                        : value.get<Tag::floatArray>().size());
}

void CheckFusion(const Values& values) {
    const int32_t count = Int(values, AONResult::RESULT_KEY_FUSION_COUNT);
    EXPECT_EQ(Int(values, AONResult::RESULT_KEY_FUSION_ITEM_LENGTH), kItemLength);
    const int64_t items = count < 0 || count > kMaxItems ? kItemsBeyond : count;
    EXPECT_EQ(Length(values.at(AONResult::RESULT_KEY_FUSION_DATA)), items * kItemLength) << count;
}

void CheckPicture(const Values& values) {
    const int32_t stride = Int(values, AONResult::RESULT_KEY_IMAGE_STRIDE);
    const int32_t height = Int(values, AONResult::RESULT_KEY_IMAGE_HEIGHT);
    EXPECT_GT(stride, 0);
    EXPECT_GT(height, 0);
    EXPECT_EQ(Int(values, AONResult::RESULT_KEY_IMAGE_WIDTH), stride);
    EXPECT_EQ(Length(values.at(AONResult::RESULT_KEY_IMAGE_DATA)),
              std::min(int64_t{stride} * height * 3 / 2, kPictureRoom))
            << "stride " << stride << ", height " << height;
}

/** Checks an event that may carry results of these service types; passes over unknown keys. */
void Check(const Event& event, int32_t running) {
    EXPECT_EQ(event.serviceType & ~running, 0) << "nobody started these types";
    Values values;
    std::vector<int32_t> keys, expected;
    for (const AONResult& result : event.results) {
        const auto* const shape =
                std::find_if(std::begin(kShapes), std::end(kShapes),
                             [&](const Shape& candidate) { return candidate.key == result.key; });
        if (shape == std::end(kShapes)) continue;
        ASSERT_EQ(result.value.getTag(), shape->tag) << result.toString();
        EXPECT_TRUE(shape->types == kAlways || (event.serviceType & shape->types) != 0)
                << "key " << result.key << " in an event of types " << event.serviceType;
        EXPECT_TRUE(shape->length == 0 || Length(result.value) == shape->length)
                << "key " << result.key << " has " << Length(result.value);
        keys.push_back(result.key);
        values[result.key] = result.value;
    }
    const auto has = [&](int32_t key) { return values.count(key) != 0; };
    for (const Shape& shape : kShapes) {
        const int32_t first = shape.key / 100 * 100;
        if (has(first) || first == AONResult::RESULT_KEY_FRAME_ID) expected.push_back(shape.key);
    }
    ASSERT_EQ(keys, expected);
    if (has(AONResult::RESULT_KEY_FUSION_DATA)) CheckFusion(values);
    if (has(AONResult::RESULT_KEY_IMAGE_DATA)) CheckPicture(values);
}

/** Checks the next events. One that was on its way already may still be of what ran before. */
void ExpectEvents(const Client& client, int32_t running, int32_t before) {
    for (int round = 0; round < 3; ++round) {
        const auto events = client.receiver->AwaitEvent();
        ASSERT_FALSE(events.empty()) << "no event came";
        for (const Event& event : events)
            Check(event, std::exchange(before, running));
    }
}

class EventsOf : public Sensor, public testing::WithParamInterface<int32_t> {};

TEST_P(EventsOf, TheStartedTypesAreAsTheInterfaceSays) {
    Client client(service);
    ASSERT_NO_FATAL_FAILURE(Run(client, kAllTypes, GetParam()));
    ExpectEvents(client, GetParam(), kAllTypes);
    // They end with a stop, and come back with a start.
    EXPECT_EQ(client.Stop(GetParam()), kOk);
    EXPECT_EQ(client.Start(GetParam()), kOk);
    ExpectEvents(client, GetParam(), GetParam());
    EXPECT_EQ(client.Stop(GetParam()), kOk);
}

INSTANTIATE_TEST_SUITE_P(Types, EventsOf,
                         testing::Values(kFusion, kFaceAngle, kGaze, kFaceFeature, kFusion | kGaze,
                                         kAllTypes),
                         testing::PrintToStringParamName());

TEST_F(Events, GoOnWithWhatIsLeftAfterAPartIsStopped) {
    Client client(service);
    ASSERT_NO_FATAL_FAILURE(Run(client, kAllTypes, kFusion | kFaceAngle));
    ASSERT_FALSE(client.receiver->AwaitEvent().empty());
    ASSERT_EQ(client.Stop(kFusion), kOk);
    ASSERT_FALSE(client.receiver->AwaitEvent().empty());
    ExpectEvents(client, kFaceAngle, kFusion | kFaceAngle);
}

}  // namespace
}  // namespace conformance
