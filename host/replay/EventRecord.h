#pragma once

#include <aidl/vendor/zarvo/hardware/camera/aon/AONCallBackInfo.h>

#include <string>

#include "platform/mtkcam/aov_event.h"

namespace zarvo::host {

/**
 * Writes a record of which the service makes exactly this event, bit for bit; every byte of it is
 * written, and what no event tells is zero. Both image blocks hold the picture.
 *
 * Gives why there is no such record, or nothing when there is one. There is one for every event
 * that a service of this version sends; not for results with unknown keys, of other types, twice,
 * in another order or against the event's service types, nor for numbers and sizes that the
 * record's blocks have no room for. A pure function.
 */
std::string WriteEventRecord(
        const aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo& event,
        aov_event& record);

}  // namespace zarvo::host
