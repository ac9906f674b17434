#include <aidl/fixture/app/BnGallery.h>
#include <aidl/fixture/app/BnWatcher.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>

#include "host/binder/Loopback.h"
#include "tests/binder/Hex.h"

namespace zarvo::host::aidl {
namespace {

using namespace ::aidl::fixture::app;
using namespace ::aidl::fixture::base;
using ndk::ScopedAStatus;
using ::tests::ExpectBytes;

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
};

class Watcher : public BnWatcher {
  public:
    ScopedAStatus seen(const Payload&, const std::shared_ptr<IGallery>&) override {
        return ScopedAStatus::ok();
    }
    ScopedAStatus closed(int32_t) override { return ScopedAStatus::ok(); }
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
    ExpectBytes(Color::GREEN, "05000000");
    ExpectBytes(std::vector<Color>{Color::GREEN, Color::BLUE}, "0200000005060000");
    ExpectBytes(Level::HIGH, "0000000000010000");
    ExpectBytes(Empty(), "0100000004000000");
    EXPECT_TRUE(Empty() == Empty() && !(Empty() < Empty()));
}

TEST_F(GeneratedCode, RecordsOfAllTypesTravelThereAndBack) {
    Picture picture;
    picture.times = {-1, 1};
    picture.corners = {{1, 2}, {3, 4}};
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
        picture.watcher = ndk::SharedRefBase::make<Watcher>();
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

TEST_F(GeneratedCode, CallsWithinTheProcessGoToTheObjectItself) {
    EXPECT_EQ(Gallery::makeServiceName("default"), "fixture.app.IGallery/default");
    EXPECT_EQ(IGallery::fromBinder(gallery->asBinder()), gallery);
    EXPECT_EQ(IGallery::fromBinder(ndk::SpAIBinder()), nullptr);
    EXPECT_NE(IGallery::fromBinder(loopback->Root()), proxy) << "a proxy was kept";
    EXPECT_EQ(IGallery::fromBinder(loopback->Root())->asBinder(), proxy->asBinder());
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
