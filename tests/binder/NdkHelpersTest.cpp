#include <android/binder_enums.h>
#include <android/binder_interface_utils.h>
#include <android/binder_parcel_utils.h>
#include <android/binder_to_string.h>
#include <gtest/gtest.h>

#include <array>
#include <thread>
#include <tuple>

namespace helpers {

struct Point {
    int32_t x = 0;
    std::optional<std::string> name;

    binder_status_t writeToParcel(AParcel* parcel) const {
        const binder_status_t status = ndk::AParcel_writeData(parcel, x);
        return status != STATUS_OK ? status : ndk::AParcel_writeNullableData(parcel, name);
    }
    binder_status_t readFromParcel(const AParcel* parcel) {
        const binder_status_t status = ndk::AParcel_readData(parcel, &x);
        return status != STATUS_OK ? status : ndk::AParcel_readNullableData(parcel, &name);
    }
    bool operator==(const Point& rhs) const { return x == rhs.x && name == rhs.name; }
    std::string toString() const { return "Point{x: " + android::internal::ToString(x) + "}"; }
};

enum class Level : int8_t { low = -1, high = 1 };
std::string toString(Level level) {
    return level == Level::low ? "low" : "high";
}

class IThing : public ndk::ICInterface {
  public:
    static constexpr const char* descriptor = "helpers.IThing";
    static binder_status_t writeToParcel(AParcel* parcel, const std::shared_ptr<IThing>& thing) {
        return AParcel_writeStrongBinder(parcel, thing ? thing->asBinder().get() : nullptr);
    }
    static binder_status_t readFromParcel(const AParcel* parcel, std::shared_ptr<IThing>* thing) {
        ndk::SpAIBinder binder;
        const binder_status_t status = AParcel_readStrongBinder(parcel, binder.getR());
        *thing = binder == nullptr ? nullptr
                                   : std::static_pointer_cast<IThing>(asInterface(binder.get()));
        return status;
    }
};

AIBinder_Class* ThingClass() {
    static AIBinder_Class* clazz = ndk::ICInterface::defineClass(
            IThing::descriptor, [](AIBinder*, transaction_code_t, const AParcel*, AParcel*) {
                return binder_status_t{STATUS_UNKNOWN_TRANSACTION};
            });
    return clazz;
}

class Thing : public ndk::BnCInterface<IThing> {
  public:
    binder_status_t dump(int fd, const char**, uint32_t) override { return fd; }

  private:
    ndk::SpAIBinder createBinder() override {
        return ndk::SpAIBinder(AIBinder_new(ThingClass(), static_cast<void*>(this)));
    }
};

}  // namespace helpers

template <>
constexpr inline std::array<helpers::Level, 2> ndk::internal::enum_values<helpers::Level> = {
        helpers::Level::low, helpers::Level::high};

namespace {

using helpers::IThing;
using helpers::Level;
using helpers::Point;
using helpers::Thing;
using Strings = std::vector<std::string>;
using NullableStrings = std::optional<std::vector<std::optional<std::string>>>;
using NullablePoints = std::optional<std::vector<std::optional<Point>>>;

ndk::ScopedAParcel Words(std::initializer_list<int32_t> words) {
    ndk::ScopedAParcel parcel(AParcel_create());
    for (int32_t word : words)
        EXPECT_EQ(AParcel_writeInt32(parcel.get(), word), STATUS_OK);
    AParcel_setDataPosition(parcel.get(), 0);
    return parcel;
}

/** Status of reading `words` as a T. */
template <typename T>
binder_status_t ReadAs(std::initializer_list<int32_t> words, T&& value = T()) {
    return ndk::AParcel_readData(Words(words).get(), &value);
}

template <typename T>
void ExpectRoundTrip(const T& value, int32_t bytes) {
    SCOPED_TRACE(android::internal::ToString(value));
    ndk::ScopedAParcel parcel(AParcel_create());
    T read{};
    EXPECT_EQ(ndk::AParcel_writeNullableData(parcel.get(), value), STATUS_OK);
    EXPECT_EQ(AParcel_getDataSize(parcel.get()), bytes);
    AParcel_setDataPosition(parcel.get(), 0);
    EXPECT_EQ(ndk::AParcel_readNullableData(parcel.get(), &read), STATUS_OK);
    EXPECT_EQ(AParcel_getDataPosition(parcel.get()), bytes);
    EXPECT_TRUE(read == value) << android::internal::ToString(read);
}

TEST(NdkParcel, ReadsBackWhatItWroteInTheSizeOfTheType) {
    ExpectRoundTrip(true, 4);
    ExpectRoundTrip<int8_t>(-2, 4);
    ExpectRoundTrip<uint8_t>(254, 4);
    ExpectRoundTrip(u'A', 4);
    ExpectRoundTrip(-1.5, 8);
    ExpectRoundTrip(Level::low, 4);
    ExpectRoundTrip(std::string("ab"), 12);
    ExpectRoundTrip(Point{3, "a"}, 16);
    ExpectRoundTrip(std::vector<uint8_t>{1, 2, 255}, 8);
    ExpectRoundTrip(std::vector<int8_t>{-1, 2, 3, 4, 5}, 12);
    ExpectRoundTrip(std::vector<Level>{Level::low, Level::high}, 8);
    ExpectRoundTrip(std::vector<bool>{true, false, true}, 16);
    ExpectRoundTrip(std::vector<char16_t>{u'A', u'B'}, 12);
    ExpectRoundTrip(std::vector<double>{0.5, -2}, 20);
    ExpectRoundTrip(std::vector<float>{}, 4);
    ExpectRoundTrip(Strings{"", "abc"}, 24);
    ExpectRoundTrip(std::vector<Point>{{1, "a"}, {2, {}}}, 32);
    ExpectRoundTrip(std::array<std::array<int32_t, 2>, 2>{{{1, 2}, {3, 4}}}, 28);
}

TEST(NdkParcel, KeepsNullAndEmptyApart) {
    ExpectRoundTrip(std::optional<std::string>(), 4);
    ExpectRoundTrip(std::optional<std::string>(""), 8);
    ExpectRoundTrip(std::optional<Point>(), 4);
    ExpectRoundTrip(std::unique_ptr<Point>(), 4);
    ExpectRoundTrip(std::optional<std::vector<bool>>(), 4);
    ExpectRoundTrip(std::optional<std::vector<int64_t>>(), 4);
    ExpectRoundTrip(std::make_optional<std::vector<int64_t>>(), 4);
    ExpectRoundTrip(NullableStrings(), 4);
    ExpectRoundTrip(NullableStrings({"a", std::nullopt}), 16);
    ExpectRoundTrip(NullablePoints(), 4);
    ExpectRoundTrip(NullablePoints({std::nullopt, Point{1, {}}}), 20);
}

TEST(NdkParcel, RefusesNullWhereItIsNoValue) {
    EXPECT_EQ(ReadAs<std::vector<int32_t>>({-1}), STATUS_UNEXPECTED_NULL);
    EXPECT_EQ(ReadAs<std::vector<uint8_t>>({-1}), STATUS_UNEXPECTED_NULL);
    EXPECT_EQ(ReadAs<std::vector<bool>>({-1}), STATUS_UNEXPECTED_NULL);
    EXPECT_EQ(ReadAs<Strings>({-1}), STATUS_UNEXPECTED_NULL);
    EXPECT_EQ(ReadAs<Strings>({1, -1}), STATUS_UNEXPECTED_NULL);
    EXPECT_EQ(ReadAs<std::vector<Point>>({-1}), STATUS_NO_MEMORY);
    EXPECT_EQ(ReadAs<std::string>({-1}), STATUS_UNEXPECTED_NULL);
    EXPECT_EQ(ReadAs<Point>({0}), STATUS_UNEXPECTED_NULL);
    EXPECT_EQ(ReadAs<Point>({-7, 5, -1}), STATUS_OK);
    EXPECT_EQ(ndk::AParcel_writeData(Words({}).get(), ndk::SpAIBinder()), STATUS_UNEXPECTED_NULL);
    ndk::ScopedAParcel parcel = Words({});
    auto thing = ndk::SharedRefBase::make<Thing>();
    std::shared_ptr<IThing> read = thing;
    EXPECT_EQ(ndk::AParcel_writeData(parcel.get(), std::shared_ptr<IThing>()), STATUS_OK);
    AParcel_setDataPosition(parcel.get(), 0);
    EXPECT_EQ(ndk::AParcel_readData(parcel.get(), &read), STATUS_OK);
    EXPECT_EQ(read, nullptr);
}

TEST(NdkParcel, MakesElementsOnlyAsTheyArrive) {
    ndk::ScopedAParcel parcel(AParcel_create());
    constexpr int32_t kBytes = 40000;
    EXPECT_EQ(AParcel_writeInt32(parcel.get(), kBytes), STATUS_OK);
    const std::vector<int32_t> zeros(kBytes / 4);  // the first element is null
    for (int32_t zero : zeros)
        AParcel_writeInt32(parcel.get(), zero);
    AParcel_setDataPosition(parcel.get(), 0);
    std::vector<Point> points(3);
    EXPECT_EQ(ndk::AParcel_readVector(parcel.get(), &points), STATUS_UNEXPECTED_NULL);
    EXPECT_LT(points.capacity(), 10u);
    EXPECT_EQ(ReadAs<std::vector<Point>>({5, 1}), STATUS_NO_MEMORY);
    EXPECT_EQ(ReadAs<std::vector<Point>>({4, 1}), STATUS_NOT_ENOUGH_DATA);
    EXPECT_EQ(ReadAs<std::vector<Point>>({-2}), STATUS_BAD_VALUE);
}

TEST(NdkParcel, ResizesOutVectorsWithinLimits) {
    std::vector<Point> points(1);
    const std::array<std::tuple<int32_t, binder_status_t>, 5> cases = {
            {{1000001, STATUS_NO_MEMORY},
             {-1, STATUS_UNEXPECTED_NULL},
             {1000000, STATUS_OK},
             {0, STATUS_OK},
             {2, STATUS_OK}}};
    for (const auto& [length, status] : cases) {
        EXPECT_EQ(ndk::AParcel_resizeVector(Words({length}).get(), &points), status) << length;
    }
    EXPECT_EQ(points, std::vector<Point>(2));
    std::optional<std::vector<Point>> nullable(points);
    EXPECT_EQ(ndk::AParcel_resizeVector(Words({-1}).get(), &nullable), STATUS_OK);
    EXPECT_FALSE(nullable.has_value());
}

TEST(NdkOwners, CountReferencesAndResources) {
    ndk::SpAIBinder binder = ndk::SharedRefBase::make<Thing>()->asBinder();
    AIBinder* raw = binder.get();
    const ndk::SpAIBinder copy = binder;
    EXPECT_EQ(AIBinder_debugGetRefCount(raw), 2);
    binder = *&binder;
    ndk::SpAIBinder moved = std::move(binder);
    EXPECT_EQ(AIBinder_debugGetRefCount(raw), 2);
    EXPECT_TRUE(moved == copy && raw == moved && moved != nullptr && nullptr < moved);
    moved = nullptr;
    EXPECT_EQ(AIBinder_debugGetRefCount(raw), 1);
    EXPECT_FALSE(ndk::ScopedAStatus().isOk());
    ndk::ScopedAStatus status = ndk::ScopedAStatus::fromServiceSpecificErrorWithMessage(5, "busy");
    ndk::ScopedAStatus& same = status;
    status = std::move(same);
    EXPECT_EQ(status.getDescription(), "Status(-8, EX_SERVICE_SPECIFIC): '5: busy'");
}

TEST(NdkInterfaces, ABinderKeepsItsImplementationWhichForgetsADeadBinder) {
    std::weak_ptr<Thing> weak;
    ndk::SpAIBinder binder;
    {
        auto thing = ndk::SharedRefBase::make<Thing>();
        weak = thing;
        binder = thing->asBinder();
        EXPECT_EQ(thing->asBinder(), binder);
        EXPECT_FALSE(thing->isRemote());
    }
    std::shared_ptr<Thing> thing = weak.lock();
    ASSERT_NE(thing, nullptr);
    EXPECT_EQ(ndk::ICInterface::asInterface(binder.get()), thing);
    EXPECT_EQ(AIBinder_dump(binder.get(), STATUS_BAD_INDEX, nullptr, 0), STATUS_BAD_INDEX);
    ndk::ScopedAIBinder_Weak old(AIBinder_Weak_new(binder.get()));
    binder = nullptr;
    EXPECT_EQ(old.promote(), nullptr);
    EXPECT_NE(thing->asBinder(), nullptr);
    thing = nullptr;
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(Thing::makeServiceName("default"), "helpers.IThing/default");
}

TEST(NdkInterfaces, ThreadsThatAskAtOnceGetOneBinder) {
    auto thing = ndk::SharedRefBase::make<Thing>();
    for (int round = 0; round < 100; ++round) {
        ndk::SpAIBinder other;
        std::thread asker([&] { other = thing->asBinder(); });
        const ndk::SpAIBinder binder = thing->asBinder();
        asker.join();
        EXPECT_EQ(binder, other);
    }
}

template <typename T, typename = void>
constexpr bool kMakeSharedCompiles = false;
template <typename T>
constexpr bool kMakeSharedCompiles<T, std::void_t<decltype(std::make_shared<T>())>> = true;
static_assert(kMakeSharedCompiles<Point> && !kMakeSharedCompiles<Thing>);

TEST(NdkInterfacesDeathTest, AnObjectThatNobodyOwnedAborts) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH({ Thing onTheStack; }, "never owned");
}

TEST(NdkText, PrintsEveryKindOfValue) {
    using android::internal::ToString;
    EXPECT_EQ(ToString(std::vector<bool>{true, false}), "[true, false]");
    EXPECT_EQ(ToString(int8_t{-1}) + ToString(u'A') + ToString(0.5f), "-1650.500000");
    EXPECT_EQ(ToString(Strings{"a", ""}), "[a, ]");
    EXPECT_EQ(ToString(std::vector<Point>{{1, {}}}), "[Point{x: 1}]");
    EXPECT_EQ(ToString(std::optional<int>()) + ToString(std::make_shared<int>(2)), "(null)2");
    std::string levels;
    for (Level level : ndk::enum_range<Level>())
        levels += ToString(level) + " ";
    EXPECT_EQ(levels, "low high ");
}

}  // namespace
