// What the steps are called, and what they do.

#include <sstream>
#include <utility>

#include "tests/model/Story.h"

namespace zarvo::test {
namespace {

std::string TypesText(int32_t types) {
    constexpr std::pair<int32_t, const char*> kNames[] = {
            {1, "FUSION"}, {2, "FACE_ANGLE"}, {4, "GAZE"}, {8, "FACE_FEATURE"}};
    if (types <= 0) return std::to_string(types);
    std::string text;
    const auto add = [&](const std::string& name) { text += (text.empty() ? "" : "|") + name; };
    for (const auto& [bit, name] : kNames) {
        if ((types & bit) != 0) add(name);
        types &= ~bit;
    }
    if (types != 0) add(std::to_string(types));
    return text;
}

std::string Call(User user, const std::string& call) {
    return std::string(NameOf(user)) + "." + call;
}

/** A step that nobody is answered. */
template <typename Happen>
Step Unanswered(std::string text, Happen happen) {
    return {std::move(text), [happen](World& world) {
                happen(world);
                return std::string();
            }};
}

}  // namespace

Step Register(User user, int32_t types) {
    return {Call(user, "register(" + TypesText(types) + ")"),
            [=](World& world) { return world.Register(user, types); }};
}

Step RegisterNothing() {
    return {"somebody.register(null)", [](World& world) { return world.RegisterNothing(); }};
}

Step Subscribe(User user, const Config& config) {
    std::ostringstream text;
    text << "subscribe(sensor " << config.sensorId << ", " << config.frameWidth << "x"
         << config.frameHeight << ", fps " << config.fps << ", " << TypesText(config.serviceType)
         << ", mode " << config.deliveryMode << ")";
    return {Call(user, text.str()), [=](World& world) { return world.Subscribe(user, config); }};
}

Step Start(User user, int32_t types) {
    return {Call(user, "start(" + TypesText(types) + ")"),
            [=](World& world) { return world.Start(user, types); }};
}

Step Stop(User user, int32_t types) {
    return {Call(user, "stop(" + TypesText(types) + ")"),
            [=](World& world) { return world.Stop(user, types); }};
}

Step Unsubscribe(User user) {
    return {Call(user, "unsubscribe()"), [=](World& world) { return world.Unsubscribe(user); }};
}

Step Unregister(User user) {
    return {Call(user, "unregister()"), [=](World& world) { return world.Unregister(user); }};
}

Step Die(User user) {
    return Unanswered(Call(user, "dies"), [=](World& world) { world.Die(user); });
}

Step DieUnnoticed(User user) {
    return Unanswered(Call(user, "dies, unnoticed"),
                      [=](World& world) { world.DieUnnoticed(user); });
}

Step TellDeath() {
    return Unanswered("the oldest death is noticed", [](World& world) { world.TellDeath(); });
}

Step RestartService() {
    return Unanswered("service.restarts", [](World& world) { world.RestartService(); });
}

Step OpenCamera(int device, bool listed) {
    return Unanswered("camera " + std::to_string(device) + " opens" +
                              (listed ? "" : ", nobody knows its sensors"),
                      [=](World& world) { world.OpenCamera(device, listed); });
}

Step CloseCamera(int device) {
    return Unanswered("camera " + std::to_string(device) + " closes",
                      [=](World& world) { world.CloseCamera(device); });
}

Step RefuseNextStart() {
    return Unanswered("stream.refuses the next start",
                      [](World& world) { world.RefuseNextStart(); });
}

Step RefuseNextStop() {
    return Unanswered("stream.refuses the next stop", [](World& world) { world.RefuseNextStop(); });
}

Step RefuseNextCameraNotice() {
    return Unanswered("stream.refuses the next camera notice",
                      [](World& world) { world.RefuseNextCameraNotice(); });
}

Step DeliverFrame() {
    return Unanswered("stream.delivers a frame", [](World& world) { world.DeliverFrame(); });
}

Config MakeConfig(int32_t sensorId, int32_t width, int32_t height, int32_t fps, int32_t types,
                  int32_t deliveryMode) {
    Config config;
    config.sensorId = sensorId;
    config.frameWidth = width;
    config.frameHeight = height;
    config.fps = fps;
    config.serviceType = types;
    config.deliveryMode = deliveryMode;
    return config;
}

}  // namespace zarvo::test
