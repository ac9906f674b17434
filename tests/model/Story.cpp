#include "tests/model/Story.h"

#include <ostream>
#include <sstream>
#include <tuple>
#include <utility>

#include "tests/model/Model.h"
#include "tests/model/RealWorld.h"

namespace aidl::vendor::zarvo::hardware::camera::aon {

void showValue(const SensorConfigInfo& config, std::ostream& out) {
    out << "\n" << config.toString();
}

}  // namespace aidl::vendor::zarvo::hardware::camera::aon

namespace zarvo::test {
namespace {

using rc::Gen;
namespace gen = rc::gen;

/** Any row; shrinks towards the first. A row that stands twice comes twice as often. */
template <typename T>
Gen<T> RowOf(std::vector<T> table) {
    const size_t rows = table.size();
    return gen::map(gen::inRange<size_t>(0, rows),
                    [table = std::move(table)](size_t row) { return table[row]; });
}

/** A step with arguments of its own. */
template <typename Make, typename... Args>
Gen<Step> StepOf(Make make, Gen<Args>... args) {
    return gen::map(gen::tuple(std::move(args)...),
                    [make](const std::tuple<Args...>& values) { return std::apply(make, values); });
}

/** Alice comes more often, so that not every registration puts somebody else out. */
Gen<User> AnyClient() {
    return RowOf<User>({User::kAlice, User::kAlice, User::kAlice, User::kBob, User::kCarol});
}

Gen<User> AnyCaller() {
    return RowOf<User>({User::kAlice, User::kAlice, User::kAlice, User::kAlice, User::kAlice,
                        User::kBob, User::kBob, User::kCarol, User::kCarol, User::kMallory});
}

Gen<int> AnyCamera() {
    std::vector<int> devices;
    for (const Camera& camera : kCameras)
        devices.push_back(camera.device);
    return RowOf(std::move(devices));
}

Gen<Step> AnyStep() {
    return gen::weightedOneOf<Step>({
            {14, StepOf(Register, AnyClient(), RowOf<int32_t>({15, 15, 15, -1, 3, 7, 0}))},
            {1, gen::just(RegisterNothing())},
            {22, StepOf(Subscribe, AnyCaller(), AnyConfig())},
            {26, StepOf(Start, AnyCaller(), RowOf<int32_t>({1, 2, 3, 4, 5, 8, 7, 15, 0, 0x40}))},
            {12, StepOf(Stop, AnyCaller(), RowOf<int32_t>({1, 2, 4, 3, 5, 15, -1, 0}))},
            {4, StepOf(Unsubscribe, AnyCaller())},
            {3, StepOf(Unregister, AnyCaller())},
            {1, StepOf(Die, AnyClient())},
            {1, StepOf(DieUnnoticed, AnyClient())},
            {2, gen::just(TellDeath())},
            {1, gen::just(RestartService())},
            {4, StepOf(OpenCamera, AnyCamera(), RowOf<bool>({true, true, true, false}))},
            {6, StepOf(CloseCamera, AnyCamera())},
            {2, gen::just(RefuseNextStart())},
            {2, gen::just(RefuseNextStop())},
            {1, gen::just(RefuseNextCameraNotice())},
            {3, gen::just(DeliverFrame())},
    });
}

std::string Told(const Step& step, const std::string& answer) {
    return step.text + (answer.empty() ? "" : " -> " + answer) + "\n";
}

std::string Told(const char* who, const Outcome& outcome) {
    std::string text = std::string(who) + " " + outcome.answer + "\n";
    for (const std::string& news : outcome.told)
        text += "      tells " + news + "\n";
    for (const std::string& call : outcome.stream)
        text += "      asks the stream: " + call + "\n";
    return text + "      has running: " + outcome.running + "\n";
}

}  // namespace

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
                return MakeConfig(sensor, size.first, size.second, fps, types, mode);
            });
}

Gen<Story> AnyStory() {
    return gen::map(gen::container<std::vector<Step>>(AnyStep()),
                    [](std::vector<Step> steps) { return Story{std::move(steps)}; });
}

std::string Difference(const Story& story) {
    RealWorld service;
    Model model;
    std::string told;
    for (const Step& step : story.steps) {
        const Outcome expected = model.Look(step.happen(model));
        const Outcome actual = service.Look(step.happen(service));
        if (actual != expected) {
            return "\n" + told + step.text + "\n" + Told("  the model:", expected) +
                   Told("  the service:", actual);
        }
        told += Told(step, expected.answer);
    }
    return "";
}

void showValue(const Story& story, std::ostream& out) {
    out << story.steps.size() << " steps";
}

}  // namespace zarvo::test
