#pragma once

#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>
#include <aidl/zarvo/aon/host/IHostControl.h>

#include <memory>
#include <string>

namespace zarvo::host::ctl {

using aidl::vendor::zarvo::hardware::camera::aon::IAONService;
using aidl::zarvo::aon::host::IHostControl;

/** The service of this user; null, and a line on stderr, if it does not run. */
std::shared_ptr<IAONService> FindService();
/** The same for the controls of its process. */
std::shared_ptr<IHostControl> FindControls();

/** What a refusal of the service really means; empty if there is no more to say than it says. */
std::string_view MeaningOf(std::string_view message);
/** kDone for a good status; else says on stderr what was refused and what that means. */
int Report(const std::string& what, const ndk::ScopedAStatus& status);

}  // namespace zarvo::host::ctl
