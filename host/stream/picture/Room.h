#pragma once

#include "host/stream/picture/Canvas.h"
#include "host/stream/scene/Scene.h"

namespace zarvo::host {

/** Draws the room behind everybody: a wall with a window that lights it from the left, a picture
 * and a sideboard, all tilted as the scene is. Covers the whole canvas. */
void DrawRoom(const Scene& scene, Canvas& canvas);

}  // namespace zarvo::host
