#include <aidl/fixture/app/BnGallery.h>
#include <aidl/fixture/app/BnWatcher.h>
#include <gtest/gtest.h>

#include <future>
#include <limits>
#include <memory>
#include <string>

#include "host/binder/Loopback.h"
#include "tests/aidl/ParcelBytes.h"

namespace zarvo::host::aidl {
namespace {

using namespace ::aidl::fixture::app;
using namespace ::aidl::fixture::base;
using ndk::ScopedAStatus;

class Gallery : public BnGallery {
  public:
    ScopedAStatus echo(const Picture& in_picture, Picture* _aidl_return) override {
        *_aidl_return = in_picture;
        return ScopedAStatus::ok();
    }
    ScopedAStatus sizes(std::vector<int32_t>* out_sizes, std::vector<Point>* out_points,
                        Point* out_corner) override {
        out_sizes->push_back(9);
        out_points->push_back({1, 2});
        out_corner->x = 4;
        return ScopedAStatus::ok();
    }
    ScopedAStatus turn(Point* inout_point, std::vector<int32_t>* inout_values,
                       int32_t* _aidl_return) override {
        *inout_point = {static_cast<int32_t>(inout_point->y), inout_point->x};
        inout_values->assign({inout_values->back(), inout_values->front()});
        *_aidl_return = 3;
        return ScopedAStatus::ok();
    }
    ScopedAStatus colors(const std::vector<Color>& in_colors, Color in_first, Level in_level,
                         std::vector<Color>* _aidl_return) override {
        *_aidl_return = {in_first};
        _aidl_return->insert(_aidl_return->end(), in_colors.begin(), in_colors.end());
        switch (in_level) {
            case Level::HIGH:
                return ScopedAStatus::ok();
            case Level::LOW:
                return ScopedAStatus::fromServiceSpecificErrorWithMessage(2, "full");
            case Level::LOWEST:
                return ScopedAStatus::fromStatus(STATUS_BAD_INDEX);
        }
        return ScopedAStatus::fromExceptionCode(EX_ILLEGAL_ARGUMENT);
    }
    ScopedAStatus texts(bool in_a, int8_t in_b, char16_t in_c, int32_t in_d, int64_t in_e,
                        float in_f, double in_g, const std::string& in_h,
                        const std::vector<std::string>& in_others,
                        const std::vector<bool>& in_which,
                        std::vector<std::string>* _aidl_return) override {
        using ::android::internal::ToString;
        *_aidl_return = {ToString(in_a), ToString(in_b), ToString(in_c), ToString(in_d),
                         ToString(in_e), ToString(in_f), ToString(in_g), in_h};
        for (size_t i = 0; i < in_others.size(); ++i) {
            if (in_which[i]) _aidl_return->push_back(in_others[i]);
        }
        return ScopedAStatus::ok();
    }
    ScopedAStatus note(const std::string& in_text) override {
        noted.set_value(in_text);
        return ScopedAStatus::fromExceptionCode(EX_SECURITY);  // nobody hears of it
    }
    ScopedAStatus watch(const std::shared_ptr<IWatcher>& in_watcher) override {
        kept = in_watcher;
        if (kept == nullptr) return ScopedAStatus::ok();
        return kept->seen(Payload::make<Payload::letter>(u'w'), ref<IGallery>());
    }
    ScopedAStatus watcher(std::shared_ptr<IWatcher>* _aidl_return) override {
        *_aidl_return = kept;
        return ScopedAStatus::ok();
    }

    std::promise<std::string> noted;
    std::shared_ptr<IWatcher> kept;
};

class Watcher : public BnWatcher {
  public:
    ScopedAStatus seen(const Payload& in_payload, const std::shared_ptr<IGallery>& from) override {
        payload.set_value({in_payload, from});
        return ScopedAStatus::ok();
    }
    ScopedAStatus closed(int32_t) override { return ScopedAStatus::ok(); }

    std::promise<std::pair<Payload, std::shared_ptr<IGallery>>> payload;
};

class GeneratedCode : public testing::Test {
  protected:
    const std::shared_ptr<Gallery> gallery = ndk::SharedRefBase::make<Gallery>();
    const std::shared_ptr<Loopback> loopback = Loopback::Connect(gallery->asBinder().get());
    const std::shared_ptr<IGallery> proxy = IGallery::fromBinder(loopback->Root());
};

TEST_F(GeneratedCode, DefaultsAreThoseOfTheSources) {
    EXPECT_EQ(Picture().toString(),
              "Picture{visible: true, alpha: -1, mark: 109, width: -2147483648, time: 0, scale: "
              "-1.500000, angle: 2.000000, title: untitled, color: GREEN, border: RED, pixels: "
              "[0, 127, 255], times: [], marks: [97, 98], palette: [RED, BLUE], tags: [one, px "
              "${name}], corners: [], center: Point{x: 3, y: -9223372036854775808}, payload: "
              "Payload{text: none}, nothing: Empty{}, watcher: (null)}");
    EXPECT_EQ(+Point::DIMENSIONS, 2);
    EXPECT_EQ(+Point::FAR, std::numeric_limits<int64_t>::max());
    EXPECT_EQ(+Point::BITS, -1);
    EXPECT_STREQ(Point::UNIT, "px ${name}");
}

TEST_F(GeneratedCode, EnumsHaveNamesAndAreListedInOrder) {
    EXPECT_EQ(toString(Color::AZURE), "BLUE");
    EXPECT_EQ(toString(static_cast<Color>(77)), "77");
    std::string names;
    for (const Color color : ndk::enum_range<Color>())
        names += toString(color) + " ";
    EXPECT_EQ(names, "RED GREEN BLUE BLUE ");
    EXPECT_EQ(Written(Color::GREEN), "05000000");
    EXPECT_EQ(Written(std::vector<Color>{Color::GREEN, Color::BLUE}), "0200000005060000");
    EXPECT_EQ(Written(Level::HIGH), "0000000000010000");
    EXPECT_EQ(Written(Empty()), "0100000004000000");
    EXPECT_TRUE(Empty() == Empty() && !(Empty() < Empty()));
}

TEST_F(GeneratedCode, RecordsOfAllTypesTravelThereAndBack) {
    Picture picture;
    picture.times = {-1, 1};
    picture.corners = {{1, 2}, {3, 4}};
    picture.watcher = ndk::SharedRefBase::make<Watcher>();
    const Payload kPayloads[] = {
            Payload::make<Payload::text>("t"),
            Payload::make<Payload::point>(Point{1, 2}),
            Payload::make<Payload::points>(std::vector<Point>{{5, 6}}),
            Payload::make<Payload::colors>(std::vector<Color>{Color::BLUE}),
            Payload::make<Payload::flags>(std::vector<bool>{true, false}),
            Payload::make<Payload::letter>(u'x'),
            Payload::make<Payload::level>(Level::LOWEST),
    };
    for (const Payload& payload : kPayloads) {
        picture.payload = payload;
        Picture back;
        ASSERT_TRUE(proxy->echo(picture, &back).isOk());
        EXPECT_EQ(back, picture) << back.toString();
    }
}

TEST_F(GeneratedCode, OutAndInOutArgumentsComeBackAndOutArraysKeepTheCallersLength) {
    std::vector<int32_t> values = {7, 7};
    std::vector<Point> points(3);
    Point point{8, 8};
    ASSERT_TRUE(proxy->sizes(&values, &points, &point).isOk());
    EXPECT_EQ(values, (std::vector<int32_t>{0, 0, 9}));
    EXPECT_EQ(points, (std::vector<Point>{{1, 2}}));
    EXPECT_EQ(point, (Point{4, std::numeric_limits<int64_t>::min()}));
    point = {1, 2};
    values = {5, 6, 7};
    int32_t result = 0;
    ASSERT_TRUE(proxy->turn(&point, &values, &result).isOk());
    EXPECT_EQ(point, (Point{2, 1}));
    EXPECT_EQ(values, (std::vector<int32_t>{7, 5}));
    EXPECT_EQ(result, 3);
}

TEST_F(GeneratedCode, EveryTypeOfArgumentArrives) {
    std::vector<Color> colors;
    ASSERT_TRUE(proxy->colors({Color::BLUE}, Color::GREEN, Level::HIGH, &colors).isOk());
    EXPECT_EQ(colors, (std::vector<Color>{Color::GREEN, Color::BLUE}));
    std::vector<std::string> texts;
    ASSERT_TRUE(proxy->texts(true, -2, u'A', -3, int64_t{1} << 40, 0.5f, 0.25, "h", {"i", "j", "k"},
                             {true, false, true}, &texts)
                        .isOk());
    EXPECT_EQ(texts, (std::vector<std::string>{"true", "-2", "65", "-3", "1099511627776",
                                               "0.500000", "0.250000", "h", "i", "k"}));
}

TEST_F(GeneratedCode, OnewayCallsReturnWithoutAnAnswer) {
    EXPECT_TRUE(proxy->note("hello").isOk());
    EXPECT_EQ(gallery->noted.get_future().get(), "hello");
    loopback->Kill();
    EXPECT_EQ(proxy->note("late").getStatus(), STATUS_DEAD_OBJECT);
}

TEST_F(GeneratedCode, InterfacesPassAsArgumentsAndResults) {
    const auto watcher = ndk::SharedRefBase::make<Watcher>();
    ASSERT_TRUE(proxy->watch(watcher).isOk());
    const auto [payload, from] = watcher->payload.get_future().get();
    EXPECT_EQ(payload.toString(), "Payload{letter: 119}");
    ASSERT_NE(from, nullptr);
    EXPECT_TRUE(from->isRemote());
    std::shared_ptr<IWatcher> back;
    ASSERT_TRUE(proxy->watcher(&back).isOk());
    EXPECT_EQ(back, watcher);
    ASSERT_TRUE(proxy->watch(nullptr).isOk());
    ASSERT_TRUE(proxy->watcher(&back).isOk());
    EXPECT_EQ(back, nullptr);
}

TEST_F(GeneratedCode, EveryKindOfErrorArrivesAndLeavesTheResultAlone) {
    std::vector<Color> colors(2);
    const auto call = [&](Level level) { return proxy->colors({}, Color::RED, level, &colors); };
    EXPECT_EQ(call(Level::LOW).getServiceSpecificError(), 2);
    EXPECT_STREQ(call(Level::LOW).getMessage(), "full");
    EXPECT_EQ(call(Level::LOWEST).getStatus(), STATUS_BAD_INDEX);
    EXPECT_EQ(call(Level{7}).getExceptionCode(), EX_ILLEGAL_ARGUMENT);
    loopback->Kill();
    EXPECT_EQ(call(Level::HIGH).getStatus(), STATUS_DEAD_OBJECT);
    EXPECT_EQ(colors.size(), 2u);
}

TEST_F(GeneratedCode, MalformedRequestsDoNotReachTheImplementation) {
    // Gives the status of a request with these numbers as arguments.
    const auto send = [&](transaction_code_t code, std::initializer_list<int32_t> arguments = {},
                          AIBinder* object = nullptr) {
        ndk::ScopedAParcel in;
        ndk::ScopedAParcel out;
        EXPECT_EQ(AIBinder_prepareTransaction(loopback->Root().get(), in.getR()), STATUS_OK);
        for (const int32_t argument : arguments)
            AParcel_writeInt32(in.get(), argument);
        if (object != nullptr) AParcel_writeStrongBinder(in.get(), object);
        return AIBinder_transact(loopback->Root().get(), code, in.getR(), out.getR(), 0);
    };
    const auto otherKind = ndk::SharedRefBase::make<Gallery>()->asBinder();
    gallery->kept = ndk::SharedRefBase::make<Watcher>();
    EXPECT_EQ(send(IGallery::TRANSACTION_watch), STATUS_NOT_ENOUGH_DATA);
    EXPECT_EQ(send(50), STATUS_UNKNOWN_TRANSACTION);
    EXPECT_NE(gallery->kept, nullptr);
    EXPECT_EQ(send(IGallery::TRANSACTION_watcher, {1, 2, 3, 4, 5, 6, 7, 8, 9}), STATUS_OK);
    // A binder of another interface arrives, as null.
    EXPECT_EQ(send(IGallery::TRANSACTION_watch, {}, otherKind.get()), STATUS_OK);
    EXPECT_EQ(gallery->kept, nullptr);
    EXPECT_EQ(IWatcher::fromBinder(loopback->Root()), nullptr);
}

TEST_F(GeneratedCode, CallsWithinTheProcessGoToTheObjectItself) {
    EXPECT_EQ(Gallery::makeServiceName("default"), "fixture.app.IGallery/default");
    EXPECT_EQ(IGallery::fromBinder(gallery->asBinder()), gallery);
    EXPECT_EQ(IGallery::fromBinder(ndk::SpAIBinder()), nullptr);
    EXPECT_NE(IGallery::fromBinder(loopback->Root()), proxy) << "a proxy was kept";
    EXPECT_EQ(IGallery::fromBinder(loopback->Root())->asBinder(), proxy->asBinder());
}

/** What turn() answers through `gallery`, 0 for an error. */
int32_t Turn(IGallery& gallery) {
    Point point;
    std::vector<int32_t> values = {1};
    int32_t result = 0;
    return gallery.turn(&point, &values, &result).isOk() ? result : 0;
}

TEST_F(GeneratedCode, ADelegatorForwardsToWhatItStandsFor) {
    const auto delegator = ndk::SharedRefBase::make<IGalleryDelegator>(proxy);
    EXPECT_EQ(Turn(*delegator), 3);
    EXPECT_FALSE(delegator->isRemote());
}

TEST(GeneratedCodeDeathTest, ADelegatorDoesNotStandInForAnotherVersion) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const std::shared_ptr<IGallery> none = ndk::SharedRefBase::make<IGalleryDefault>();
    EXPECT_DEATH(ndk::SharedRefBase::make<IGalleryDelegator>(none), "");
}

TEST(GeneratedDefault, RefusesEverythingOrAnswersWhatTheServerDoesNotKnow) {
    const auto none = ndk::SharedRefBase::make<IGalleryDefault>();
    EXPECT_EQ(none->watch(nullptr).getStatus(), STATUS_UNKNOWN_TRANSACTION);
    int32_t version = 5;
    std::string hash = "x";
    EXPECT_TRUE(none->getInterfaceVersion(&version).isOk() && none->getInterfaceHash(&hash).isOk());
    EXPECT_TRUE(version == 0 && hash.empty());
    EXPECT_TRUE(none->asBinder().get() == nullptr && !none->isRemote());

    // A server of the interface's name that knows no method at all.
    static AIBinder_Class* const clazz = AIBinder_Class_define(
            IGallery::descriptor, [](void*) -> void* { return nullptr; }, [](void*) {},
            [](AIBinder*, transaction_code_t, const AParcel*, AParcel*) -> binder_status_t {
                return STATUS_UNKNOWN_TRANSACTION;
            });
    const ndk::SpAIBinder server(AIBinder_new(clazz, nullptr));
    const std::shared_ptr<Loopback> loopback = Loopback::Connect(server.get());
    const std::shared_ptr<IGallery> proxy = IGallery::fromBinder(loopback->Root());
    ASSERT_NE(proxy, nullptr);
    EXPECT_EQ(proxy->watch(nullptr).getStatus(), STATUS_UNKNOWN_TRANSACTION);
    EXPECT_FALSE(IGallery::setDefaultImpl(nullptr));
    EXPECT_TRUE(IGallery::setDefaultImpl(ndk::SharedRefBase::make<Gallery>()));
    EXPECT_EQ(Turn(*proxy), 3);
}

TEST_F(GeneratedCode, GivenNumbersAreUsedAndVersionsAskedForOnce) {
    EXPECT_EQ(+IWatcher::TRANSACTION_seen, 8u);
    EXPECT_EQ(+IWatcher::TRANSACTION_closed, 4u);
    for (const bool dead : {false, true}) {
        if (dead) loopback->Kill();
        int32_t version = 0;
        std::string hash;
        EXPECT_TRUE(proxy->getInterfaceVersion(&version).isOk());
        EXPECT_TRUE(proxy->getInterfaceHash(&hash).isOk());
        EXPECT_EQ(version, 2);
        EXPECT_EQ(hash, "notfrozen");
    }
}

}  // namespace
}  // namespace zarvo::host::aidl
