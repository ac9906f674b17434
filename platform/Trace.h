#pragma once

#include <cutils/trace.h>

namespace zarvo::aon {

/**
 * A section of a system trace, from its construction to its end, on the thread that runs it. Costs
 * the reading of one word while nobody traces the camera.
 */
class TraceSection {
  public:
    explicit TraceSection(const char* name) { atrace_begin(ATRACE_TAG_CAMERA, name); }
    ~TraceSection() { atrace_end(ATRACE_TAG_CAMERA); }
    TraceSection(const TraceSection&) = delete;
    TraceSection& operator=(const TraceSection&) = delete;
};

}  // namespace zarvo::aon
