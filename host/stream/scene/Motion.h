#pragma once

#include "host/stream/scene/Scene.h"
#include "host/stream/scene/Visits.h"

namespace zarvo::host {

/**
 * How a visitor holds and moves the head at a moment of the visit: walks in and out, stands and
 * sways, leans nearer and back, turns the head from one thing to another, and looks around with
 * quick movements of the eyes between rests, often at the sensor, and blinks, sometimes twice.
 * A pure function, continuous in the visit's times.
 */
Face FaceOf(const Visit& visit, float aspect);

}  // namespace zarvo::host
