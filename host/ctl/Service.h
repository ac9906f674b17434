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

/** kDone for a good status; else says on stderr what was refused and what that means. */
int Report(const std::string& what, const ndk::ScopedAStatus& status);
/** Says on stderr, the first time, that the service went away. Gives kNoService. Thread-safe. */
int ReportGone();

}  // namespace zarvo::host::ctl
