#include "tests/model/Model.h"

#include <cstdlib>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "tests/model/RealWorld.h"

// For rapidcheck, which shows what a story was cut down to.

namespace aidl::vendor::zarvo::hardware::camera::aon {

void showValue(const SensorConfigInfo& config, std::ostream& out) {
    out << "\n" << config.toString();
}

}  // namespace aidl::vendor::zarvo::hardware::camera::aon

namespace zarvo::test {

std::string TextOf(const Step& step) {
    constexpr const char* kActs[] = {"register",
                                     "registers nothing",
                                     "subscribe",
                                     "start",
                                     "stop",
                                     "unsubscribe",
                                     "unregister",
                                     "dies",
                                     "dies unnoticed",
                                     "the oldest death is noticed",
                                     "the service restarts",
                                     "camera opens",
                                     "camera opens, nobody knows its sensors",
                                     "camera closes",
                                     "the stream refuses the next start",
                                     "the stream refuses the next stop",
                                     "the stream refuses the next camera notice",
                                     "the stream delivers a frame"};
    std::string text = NameOf(step.user);
    if (!text.empty()) text += ": ";
    text += kActs[static_cast<size_t>(step.act)];
    if (step.number != kNoNumber) text += " " + std::to_string(step.number);
    return step.act == Act::kSubscribe ? text + " " + step.config.toString() : text;
}

void showValue(const Step& step, std::ostream& out) {
    out << "\n" << TextOf(step);
}

namespace {

using rc::Gen;
namespace gen = rc::gen;

using Story = std::vector<Step>;

// Where stories come from. All shrink: to fewer steps, to what stands first in the tables.

/** Any row; shrinks towards the first. A row that stands twice comes twice as often. */
template <typename T>
Gen<T> RowOf(std::vector<T> table) {
    const size_t rows = table.size();
    return gen::map(gen::inRange<size_t>(0, rows),
                    [table = std::move(table)](size_t row) { return table[row]; });
}

Gen<Config> AnyConfig() {
    using Size = std::pair<int32_t, int32_t>;
    return gen::map(
            gen::tuple(RowOf<int32_t>({1, 1, 1, 2, 3, 4}),
                       RowOf<Size>({{640, 480}, {640, 480}, {640, 480}, {320, 240}, {640, 240}}),
                       RowOf<int32_t>({10, 10, 5, 15, 30}),
                       RowOf<int32_t>({15, 15, 15, 7, 3, 5, 1, 2, 0, 0x40}),
                       RowOf<int32_t>({1, 1, 0, 3, -1})),
            [](const std::tuple<int32_t, Size, int32_t, int32_t, int32_t>& values) {
                const auto& [sensor, size, fps, types, mode] = values;
                return Config{sensor, size.first, size.second, fps, 0, 0, types, mode};
            });
}

Gen<Step> StepOf(Act act, const Gen<User>& user, const Gen<int32_t>& number = gen::just(kNoNumber),
                 const Gen<Config>& config = gen::just(Config())) {
    return gen::build<Step>(gen::set(&Step::act, gen::just(act)), gen::set(&Step::user, user),
                            gen::set(&Step::number, number), gen::set(&Step::config, config));
}

Gen<Step> AnyStep() {
    // Alice comes more often, so that not every registration puts somebody else out.
    const auto client =
            RowOf<User>({User::kAlice, User::kAlice, User::kAlice, User::kBob, User::kCarol});
    const auto caller =
            RowOf<User>({User::kAlice, User::kAlice, User::kAlice, User::kAlice, User::kAlice,
                         User::kBob, User::kBob, User::kCarol, User::kCarol, User::kMallory});
    const auto nobody = gen::just(User::kNobody);
    const auto camera = RowOf<int32_t>({5, 6, 7, 8, -1});
    return gen::weightedOneOf<Step>({
            {14, StepOf(Act::kRegister, client, RowOf<int32_t>({15, 15, 15, -1, 3, 7, 0}))},
            {1, StepOf(Act::kRegisterNothing, nobody)},
            {22, StepOf(Act::kSubscribe, caller, gen::just(kNoNumber), AnyConfig())},
            {26, StepOf(Act::kStart, caller, RowOf<int32_t>({1, 2, 3, 4, 5, 8, 7, 15, 0, 0x40}))},
            {12, StepOf(Act::kStop, caller, RowOf<int32_t>({1, 2, 4, 3, 5, 15, -1, 0}))},
            {4, StepOf(Act::kUnsubscribe, caller)},
            {3, StepOf(Act::kUnregister, caller)},
            {1, StepOf(Act::kDie, client)},
            {1, StepOf(Act::kDieUnnoticed, client)},
            {2, StepOf(Act::kTellDeath, nobody)},
            {1, StepOf(Act::kRestartService, nobody)},
            {3, StepOf(Act::kOpenCamera, nobody, camera)},
            {1, StepOf(Act::kOpenUnlistedCamera, nobody, camera)},
            {6, StepOf(Act::kCloseCamera, nobody, camera)},
            {2, StepOf(Act::kRefuseNextStart, nobody)},
            {2, StepOf(Act::kRefuseNextStop, nobody)},
            {1, StepOf(Act::kRefuseNextCameraNotice, nobody)},
            {3, StepOf(Act::kDeliverFrame, nobody)},
    });
}

std::string Lines(const Outcome& outcome) {
    std::string text;
    for (const std::string& line : outcome)
        text += "    " + line + "\n";
    return text;
}

/**
 * Lets the story happen to the model and to the real service. Gives "" if both agree after each
 * step; otherwise the first step after which they do not, and what each did there.
 */
std::string Difference(const Story& story) {
    RealWorld service;
    Model model;
    for (const Step& step : story) {
        const Outcome expected = model.Do(step);
        const Outcome actual = service.Do(step);
        if (actual != expected) {
            return TextOf(step) + "\n  the model:\n" + Lines(expected) + "  the service:\n" +
                   Lines(actual);
        }
    }
    return "";
}

/** Says how many stories are told, unless the environment does. */
class Theory : public testing::Test {
  protected:
    static void SetUpTestSuite() { setenv("RC_PARAMS", AON_MODEL_PARAMS, 0); }
};

TEST_F(Theory, IsWhatTheServiceDoesInEveryStory) {
    rc::detail::checkGTest([] {
        const std::string difference = Difference(*gen::container<Story>(AnyStep()));
        if (!difference.empty()) RC_FAIL(difference);
    });
}

/** The service admits one client at a time; its arbitration is made for many. */
TEST_F(Theory, IsHowTheConfigurationsOfManyClientsMergeAndJoin) {
    rc::detail::checkGTest([] {
        const auto configs = *gen::container<std::vector<Config>>(AnyConfig());
        const Config wanted = *AnyConfig();
        aon::SensorConfigMap byHandle;
        for (const Config& config : configs)
            byHandle[static_cast<int64_t>(byHandle.size())] = config;
        Config merged = aon::MergeSensorConfigs(byHandle);
        if (merged.deliveryMode == aon::kDeliveryModeConflict) merged.deliveryMode = 1;
        RC_ASSERT(merged == MergeAll(configs));
        for (const bool running : {true, false}) {
            RC_ASSERT(!aon::FindConflict(merged, wanted, running) ==
                      CanJoin(merged, wanted, running));
        }
    });
}

}  // namespace
}  // namespace zarvo::test
