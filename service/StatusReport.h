#pragma once

#include "service/ServiceStatus.h"
#include "service/StatusWriter.h"

namespace zarvo::aon {

/** Tells the status, part by part. A pure function. */
void ReportStatus(const ServiceStatus& status, StatusWriter& writer);

}  // namespace zarvo::aon
