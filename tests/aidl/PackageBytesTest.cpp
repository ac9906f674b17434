#include <aidl/vendor/zarvo/hardware/camera/aon/AONCallBackInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONService.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <variant>
#include <vector>

#include "tests/aidl/ParcelBytes.h"

namespace zarvo::host::aidl {
namespace {

using namespace ::aidl::vendor::zarvo::hardware::camera::aon;
using Tag = AONResultValue::Tag;
using Bytes = std::vector<uint8_t>;

template <typename T>
void ExpectBytes(const T& value, const char* hex) {
    EXPECT_EQ(Written(value), hex);
    EXPECT_TRUE(ReadsAs(hex, value)) << hex;
}

AONCallBackInfo OneResult(int32_t key, AONResultValue value) {
    return {1, {AONResult{key, std::move(value)}}};
}

/** What a value writes of itself, and reads again. */
template <typename T>
void ExpectOwnBytes(const T& value, const char* hex) {
    const ndk::ScopedAParcel parcel(AParcel_create());
    EXPECT_EQ(value.writeToParcel(parcel.get()), STATUS_OK);
    EXPECT_EQ(Hex(parcel.get()), hex);
    const ndk::ScopedAParcel bytes = ParcelOf(hex);
    T read{};
    EXPECT_EQ(read.readFromParcel(bytes.get()), STATUS_OK);
    EXPECT_EQ(read, value);
    EXPECT_EQ(AParcel_getDataPosition(bytes.get()), AParcel_getDataSize(bytes.get()));
}

TEST(PackageBytes, UnionsHaveNoSizeAndStartWithTheFirstAlternative) {
    ExpectBytes(AONResultValue(), "010000000000000000000000");
    ExpectOwnBytes(AONResultValue(), "0000000000000000");
    ExpectOwnBytes(AONResult(), "1400000000000000010000000000000000000000");
}

TEST(PackageBytes, ResultsOfEveryKind) {
    const struct {
        AONCallBackInfo info;
        const char* hex;
    } kCases[] = {
            {{}, "010000000c0000000000000000000000"},
            {OneResult(2, AONResultValue::make<Tag::byteArray>(Bytes{1, 2, 3})),
             "01000000280000000100000001000000010000001800000002000000010000000100000003000000"
             "01020300"},
            {OneResult(3, AONResultValue::make<Tag::intValue>(305419896)),
             "01000000240000000100000001000000010000001400000003000000010000000200000078563412"},
            {OneResult(5, AONResultValue::make<Tag::stringValue>("face")),
             "01000000300000000100000001000000010000002000000005000000010000000400000004000000"
             "660061006300650000000000"},
            {OneResult(5, AONResultValue::make<Tag::stringValue>()),
             "01000000280000000100000001000000010000001800000005000000010000000400000000000000"
             "00000000"},
            {OneResult(6, AONResultValue::make<Tag::floatValue>(0.5f)),
             "0100000024000000010000000100000001000000140000000600000001000000050000000000003f"},
            {OneResult(7, AONResultValue::make<Tag::floatArray>({1.0f, -1.5f})),
             "010000002c0000000100000001000000010000001c00000007000000010000000600000002000000"
             "0000803f0000c0bf"},
            {OneResult(8, AONResultValue::make<Tag::doubleValue>(0.25)),
             "01000000280000000100000001000000010000001800000008000000010000000700000000000000"
             "0000d03f"},
            {OneResult(10, AONResultValue::make<Tag::boolValue>(false)),
             "0100000024000000010000000100000001000000140000000a000000010000000900000000000000"},
    };
    for (const auto& c : kCases)
        ExpectBytes(c.info, c.hex);
}

TEST(PackageBytes, Records) {
    ExpectBytes(SensorConfigInfo{1, 640, 480, 10, 0, 0, 2, 3},
                "01000000240000000100000080020000e00100000a00000000000000000000000200000003000000");
    ExpectBytes(AONSensorInfo{7, 1, 270, 90, {{320, 240, {5, 10}}, {640, 480, {30}}}},
                "010000004c00000007000000010000000e0100005a00000002000000010000001800000040010000"
                "f000000002000000050000000a000000010000001400000080020000e0010000010000001e000000");
    ExpectBytes(AONSensorStateInfo{7, 2}, "010000000c0000000700000002000000");
    ExpectBytes(std::vector<AONSensorInfo>{}, "00000000");
    ExpectBytes(std::vector<AONResult>{}, "00000000");
}

template <typename T>
void ExpectRead(const char* hex, binder_status_t status, int32_t position, const T& expected) {
    const ndk::ScopedAParcel parcel = ParcelOf(hex);
    T read{};
    EXPECT_EQ(ndk::AParcel_readData(parcel.get(), &read), status) << hex;
    EXPECT_EQ(AParcel_getDataPosition(parcel.get()), position) << hex;
    EXPECT_EQ(read, expected) << hex;
}

TEST(PackageBytes, OddParcelablesAreReadUpToTheirSize) {
    using State = AONSensorStateInfo;
    ExpectRead("02000000080000000900000008000000", STATUS_OK, 12, State{9, 0});
    ExpectRead("070000000c0000000900000008000000", STATUS_OK, 16, State{9, 8});
    ExpectRead("00000000", STATUS_UNEXPECTED_NULL, 4, State{});
    ExpectRead("00000000", STATUS_UNEXPECTED_NULL, 4, AONResult{});
    ExpectRead("0100000003000000", STATUS_BAD_VALUE, 8, State{});
    ExpectRead("0100000004000000", STATUS_OK, 8, State{});
    ExpectRead("010000000800000009000000", STATUS_OK, 12, State{9, 0});
    ExpectRead("0100000010000000090000000800000007000000ffffffff", STATUS_OK, 20, State{9, 8});
    ExpectRead("01000000640000000900000008000000", STATUS_OK, 104, State{9, 8});
    ExpectRead("010000000c00000009000000", STATUS_NOT_ENOUGH_DATA, 12, State{9, 0});
    ExpectRead("01000000fcffffff09000000", STATUS_BAD_VALUE, 8, State{});
    ExpectRead("01000000ffffff7f0900000008000000", STATUS_BAD_VALUE, 8, State{});
    ExpectRead("010000000a0000000900000008000000", STATUS_OK, 14, State{9, 8});
    ExpectRead("0200000008000000070000000a000000", STATUS_OK, 12, AONResult{7, {}});
}

TEST(PackageBytes, OddUnionsAndVectorsAreRefused) {
    const AONResultValue none;
    ExpectRead("010000000a00000000000000", STATUS_BAD_VALUE, 8, none);
    ExpectRead("01000000ffffffff", STATUS_BAD_VALUE, 8, none);
    ExpectRead("0100000002000000", STATUS_NOT_ENOUGH_DATA, 8, none);
    const std::vector<AONResult> empty;
    ExpectRead("ffffffff", STATUS_NO_MEMORY, 4, empty);
    ExpectRead("40420f00", STATUS_NO_MEMORY, 4, empty);
    ExpectRead("0100000000000000", STATUS_UNEXPECTED_NULL, 8, std::vector<AONResult>(1));
    // An unknown alternative deep inside fails the whole record.
    AONCallBackInfo info;
    const ndk::ScopedAParcel parcel = ParcelOf(
            "0100000024000000010000000100000001000000140000000300000001000000"
            "0a0000002a000000");
    EXPECT_EQ(ndk::AParcel_readData(parcel.get(), &info), STATUS_BAD_VALUE);
}

TEST(PackageBytes, OverlappingRecordsDoNotMultiplyTheirBytes) {
    // Every result ends, by its size, before its own array, in which the next one begins. Its
    // words: presence, which is the count of the array before it; size; key; presence; tag.
    constexpr int32_t kResults = 5000;
    constexpr int32_t kArrayBytes = kResults * 10;
    std::vector<int32_t> words{1, 12 + kResults * 20, 1, kResults};
    for (int32_t i = 0; i < kResults; ++i)
        words.insert(words.end(), {kArrayBytes, 16, 2, 1, 1});
    words.resize(words.size() + kArrayBytes / 4 + 1);
    const ndk::ScopedAParcel parcel(AParcel_create());
    for (const int32_t word : words)
        AParcel_writeInt32(parcel.get(), word);
    AParcel_setDataPosition(parcel.get(), 0);
    AONCallBackInfo info;
    EXPECT_EQ(ndk::AParcel_readData(parcel.get(), &info), STATUS_NO_MEMORY);
    size_t held = 0;
    for (const AONResult& result : info.results) {
        if (result.value.getTag() == Tag::byteArray)
            held += result.value.get<Tag::byteArray>().size();
    }
    EXPECT_GT(held, 0u);
    EXPECT_LT(held, 5 * 4 * words.size());
    // Reading again from the start is another reading.
    AParcel_setDataPosition(parcel.get(), 0);
    int32_t presence = 0;
    EXPECT_EQ(AParcel_readInt32(parcel.get(), &presence), STATUS_OK);
}

TEST(PackageText, ShowsEveryFieldAndAlternative) {
    const AONCallBackInfo info{3,
                               {{1, AONResultValue::make<Tag::byteValue>(int8_t{7})},
                                {2, AONResultValue::make<Tag::byteArray>(Bytes{9, 8})},
                                {3, AONResultValue::make<Tag::intValue>(42)},
                                {4, AONResultValue::make<Tag::intArray>({1, 2})},
                                {5, AONResultValue::make<Tag::stringValue>("ok")},
                                {6, AONResultValue::make<Tag::floatValue>(1.25f)},
                                {7, AONResultValue::make<Tag::floatArray>({0.0f})},
                                {8, AONResultValue::make<Tag::doubleValue>(2.5)},
                                {9, AONResultValue::make<Tag::doubleArray>({3.5})},
                                {10, AONResultValue::make<Tag::boolValue>(true)}}};
    EXPECT_EQ(info.toString(),
              "AONCallBackInfo{serviceType: 3, results: [AONResult{key: 1, value: "
              "AONResultValue{byteValue: 7}}, AONResult{key: 2, value: AONResultValue{byteArray: "
              "[9, 8]}}, AONResult{key: 3, value: AONResultValue{intValue: 42}}, AONResult{key: 4, "
              "value: AONResultValue{intArray: [1, 2]}}, AONResult{key: 5, value: "
              "AONResultValue{stringValue: ok}}, AONResult{key: 6, value: "
              "AONResultValue{floatValue: 1.250000}}, AONResult{key: 7, value: "
              "AONResultValue{floatArray: [0.000000]}}, AONResult{key: 8, value: "
              "AONResultValue{doubleValue: 2.500000}}, AONResult{key: 9, value: "
              "AONResultValue{doubleArray: [3.500000]}}, AONResult{key: 10, value: "
              "AONResultValue{boolValue: true}}]}");
    EXPECT_EQ(AONResult().toString(), "AONResult{key: 0, value: AONResultValue{byteValue: 0}}");
    const SensorConfigInfo config{1, 640, 480, 10, 0, 0, 2, 3};
    EXPECT_EQ(config.toString(),
              "SensorConfigInfo{sensorId: 1, frameWidth: 640, frameHeight: 480, fps: 10, "
              "reserved0: 0, reserved1: 0, serviceType: 2, deliveryMode: 3}");
}

TEST(PackageUnion, HoldsOneAlternativeOrderedByTagFirst) {
    AONResultValue value;
    EXPECT_EQ(value.getTag(), Tag::byteValue);
    EXPECT_EQ(value.get<Tag::byteValue>(), 0);
    value.set<Tag::floatArray>(std::vector<float>{1.0f, 2.0f});
    EXPECT_EQ(value.get<Tag::floatArray>(), (std::vector<float>{1.0f, 2.0f}));
    EXPECT_LT(AONResultValue::make<Tag::intValue>(9), AONResultValue::make<Tag::boolValue>(false));
    EXPECT_LT(AONResultValue::make<Tag::intValue>(8), AONResultValue::make<Tag::intValue>(9));
    EXPECT_NE(AONResultValue::make<Tag::floatValue>(1.0f), AONResultValue::make<Tag::intValue>(1));
    EXPECT_EQ(AONResultValue(2.0), AONResultValue::make<AONResultValue::doubleValue>(2.0));
    EXPECT_EQ(toString(Tag::doubleArray), "doubleArray");
    EXPECT_EQ(toString(static_cast<Tag>(10)), "10");
    int32_t next = 0;
    for (const Tag tag : ndk::enum_range<Tag>())
        EXPECT_EQ(static_cast<int32_t>(tag), next++);
    EXPECT_EQ(next, 10);
}

TEST(PackageUnionDeathTest, AskingForAnotherAlternativeEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const AONResultValue value = AONResultValue::make<Tag::intValue>(1);
    // A real compiler's code throws where it does not run on a phone.
    const auto ask = [&] {
        try {
            (void)value.get<Tag::floatValue>();
        } catch (const std::bad_variant_access&) {
            std::abort();
        }
    };
    EXPECT_DEATH(ask(), "");
}

TEST(PackageRecords, AreComparedFieldByField) {
    const AONSensorStateInfo idle{7, 0};
    const AONSensorStateInfo busy{7, 2};
    const AONSensorStateInfo other{8, 0};
    EXPECT_TRUE(idle < busy && busy < other && idle <= idle && other > busy && busy >= idle);
    EXPECT_TRUE(idle != busy && idle == (AONSensorStateInfo{7, 0}));
}

TEST(PackageStatics, AreThoseOfTheFrozenVersion) {
    constexpr const char* kName = "vendor.zarvo.hardware.camera.aon.IAONService";
    using Service = IAONService;
    EXPECT_STREQ(Service::descriptor, kName);
    EXPECT_EQ(BnAONService::makeServiceName("default"), std::string(kName) + "/default");
    EXPECT_EQ(+Service::version, 1);
    EXPECT_EQ(Service::hash.find_first_not_of("0123456789abcdef"), std::string::npos);
    EXPECT_EQ(Service::hash.size(), 40u);
    EXPECT_EQ(Service::hash, IAONServiceCallBack::hash);
    const std::vector<uint32_t> codes = {
            Service::TRANSACTION_registerClient,   Service::TRANSACTION_getAonSensorInfoList,
            Service::TRANSACTION_subscribeSensor,  Service::TRANSACTION_startService,
            Service::TRANSACTION_stopService,      Service::TRANSACTION_unsubscribeSensor,
            Service::TRANSACTION_unregisterClient,
    };
    EXPECT_EQ(codes, (std::vector<uint32_t>{1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(Service::SERVICE_TYPE_FACE_FEATURE, 8);
    EXPECT_EQ(AONResult::RESULT_KEY_IMAGE_DATA, 703);
    EXPECT_EQ(AONSensorStateInfo::SENSOR_STATE_BUSY, 2);
    EXPECT_STREQ(FrameInfo::descriptor, "vendor.zarvo.hardware.camera.aon.FrameInfo");
    EXPECT_EQ(+FrameInfo::_aidl_stability, ndk::STABILITY_VINTF);
}

}  // namespace
}  // namespace zarvo::host::aidl
