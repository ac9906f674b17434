#pragma once

#include "host/stream/Canvas.h"
#include "host/stream/Scene.h"

namespace zarvo::host {

/** Draws the scene: a room, and in it each face with its shoulders, its eyes looking where its
 * gaze says and open as far as they are. Covers the whole canvas. */
void DrawScene(const Scene& scene, Canvas& canvas);

/** Marks what a detector found: a frame around each face and a dot on each landmark. */
void DrawDetections(const Scene& scene, Canvas& canvas);

}  // namespace zarvo::host
