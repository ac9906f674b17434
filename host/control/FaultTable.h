#pragma once

#include <span>
#include <string_view>

#include "host/common/FaultPoint.h"

namespace zarvo::host {

/** A fault point of this process, by the name that people use. */
struct NamedFault {
    std::string_view name;
    FaultPoint* point;
};

/** All of them. */
std::span<const NamedFault> AllFaults();
/** The one of that name, null if there is none. */
FaultPoint* FindFault(std::string_view name);

}  // namespace zarvo::host
