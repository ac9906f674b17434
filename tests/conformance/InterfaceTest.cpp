#include <android/binder_manager.h>

#include <limits>
#include <set>

#include "tests/conformance/Fixture.h"

namespace conformance {
namespace {

using aon::IAONService;

using Interface = Service;

TEST_F(Interface, IsDeclaredAndOfThisVersion) {
    EXPECT_TRUE(AServiceManager_isDeclared(kInstance));
    int32_t version = 0;
    std::string hash;
    EXPECT_TRUE(service->getInterfaceVersion(&version).isOk());
    EXPECT_TRUE(service->getInterfaceHash(&hash).isOk());
    EXPECT_EQ(version, int32_t{IAONService::version});
    EXPECT_EQ(hash, IAONService::hash);
}

TEST_F(Interface, ListsSensorsThatCanBeAskedFor) {
    std::vector<aon::AONSensorInfo> sensors;
    ASSERT_EQ(Answer(service->getAonSensorInfoList(&sensors)), kOk);
    std::set<int32_t> ids;
    for (const auto& sensor : sensors) {
        EXPECT_TRUE(ids.insert(sensor.sensorId).second) << "listed twice: " << sensor.toString();
        EXPECT_EQ(sensor.supportMode, 63);
        for (const auto& size : sensor.frameInfos) {
            EXPECT_GT(size.frameWidth, 0) << sensor.toString();
            EXPECT_GT(size.frameHeight, 0) << sensor.toString();
            for (const int32_t rate : size.supportRates)
                EXPECT_GT(rate, 0) << sensor.toString();
        }
    }
    if (sensors.empty()) GTEST_SKIP() << "no sensor is offered";
    EXPECT_EQ(Sensors(*service), sensors) << "the list has changed";
}

/** Sends what no proxy sends: arguments as `write` puts them. */
template <typename Write>
std::string Send(const IAONService& service, transaction_code_t code, Write write) {
    // The interface does not change what it is called on.
    const ndk::SpAIBinder target = const_cast<IAONService&>(service).asBinder();
    ndk::ScopedAParcel request, reply;
    EXPECT_EQ(AIBinder_prepareTransaction(target.get(), request.getR()), STATUS_OK);
    write(request.get(), target.get());
    const binder_status_t sent =
            AIBinder_transact(target.get(), code, request.getR(), reply.getR(), 0);
    if (sent != STATUS_OK) return "status " + std::to_string(sent);
    ndk::ScopedAStatus status;
    EXPECT_EQ(AParcel_readStatusHeader(reply.get(), status.getR()), STATUS_OK);
    return Answer(status);
}

TEST_F(Interface, OutlivesCallsThatNoProxyMakes) {
    const auto nothing = [](AParcel*, AIBinder*) {};
    EXPECT_EQ(Send(*service, FIRST_CALL_TRANSACTION + 1000, nothing),
              "status " + std::to_string(STATUS_UNKNOWN_TRANSACTION));
    // The arguments are missing.
    for (transaction_code_t code = FIRST_CALL_TRANSACTION; code < FIRST_CALL_TRANSACTION + 7;
         ++code) {
        const bool hasNone = code == FIRST_CALL_TRANSACTION + 1;  // getAonSensorInfoList
        EXPECT_TRUE(hasNone || Send(*service, code, nothing) != kOk) << code;
    }
    // A record that announces more than all memory.
    EXPECT_NE(Send(*service, FIRST_CALL_TRANSACTION + 2,
                   [](AParcel* parcel, AIBinder*) {
                       AParcel_writeInt64(parcel, 1);
                       AParcel_writeInt32(parcel, 1);
                       AParcel_writeInt32(parcel, std::numeric_limits<int32_t>::max());
                   }),
              kOk);
    EXPECT_EQ(AIBinder_ping(service->asBinder().get()), STATUS_OK);
}

TEST_F(Interface, RefusesANullCallbackAndABinderOfAnotherKind) {
    int64_t handle = 99;
    EXPECT_EQ(Answer(service->registerClient(nullptr, kFusion, &handle)), kNullCallback);
    EXPECT_EQ(handle, 99);
    // The service's own binder, given as a callback.
    EXPECT_EQ(Send(*service, FIRST_CALL_TRANSACTION,
                   [](AParcel* parcel, AIBinder* target) {
                       AParcel_writeStrongBinder(parcel, target);
                       AParcel_writeInt32(parcel, kFusion);
                   }),
              kNullCallback);
}

}  // namespace
}  // namespace conformance
