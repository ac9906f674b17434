#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include <rapidcheck.h>

#include "tests/model/World.h"

namespace aidl::vendor::zarvo::hardware::camera::aon {

/** For rapidcheck. */
void showValue(const SensorConfigInfo& config, std::ostream& out);

}  // namespace aidl::vendor::zarvo::hardware::camera::aon

namespace zarvo::test {

/** One thing that happens, with the name it is told by: `bob.start(FUSION|GAZE)`. */
struct Step {
    std::string text;
    /** Lets it happen; gives the answer, or nothing if nobody is answered. */
    std::function<std::string(World&)> happen;
};

struct Story {
    std::vector<Step> steps;
};

// The steps.

Step Register(User user, int32_t types);
Step RegisterNothing();
Step Subscribe(User user, const Config& config);
Step Start(User user, int32_t types);
Step Stop(User user, int32_t types);
Step Unsubscribe(User user);
Step Unregister(User user);
Step Die(User user);
Step DieUnnoticed(User user);
Step TellDeath();
Step RestartService();
Step OpenCamera(int device, bool listed);
Step CloseCamera(int device);
Step RefuseNextStart();
Step RefuseNextStop();
Step RefuseNextCameraNotice();
Step DeliverFrame();

Config MakeConfig(int32_t sensorId, int32_t width, int32_t height, int32_t fps, int32_t types,
                  int32_t deliveryMode);

/**
 * Lets the story happen to the model and to the real service. Gives "" if both agree after each
 * step; otherwise the story up to the step where they do not, and what each did there.
 */
std::string Difference(const Story& story);

// Where stories come from. All shrink: to fewer steps, to what stands first in the tables.

rc::Gen<Config> AnyConfig();
rc::Gen<Story> AnyStory();

/** For rapidcheck; the story itself is told by Difference. */
void showValue(const Story& story, std::ostream& out);

}  // namespace zarvo::test
