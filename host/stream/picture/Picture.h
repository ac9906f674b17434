#pragma once

#include "host/stream/picture/Canvas.h"
#include "host/stream/scene/Scene.h"

namespace zarvo::host {

/** Draws the scene: the room, and in it everybody who is there. Covers the whole canvas. */
void DrawScene(const Scene& scene, Canvas& canvas);

/** Marks what a detector found: a frame around each counted face and a dot on each landmark. */
void DrawDetections(const Scene& scene, Canvas& canvas);

}  // namespace zarvo::host
