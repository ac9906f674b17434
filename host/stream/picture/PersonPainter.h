#pragma once

#include "host/stream/picture/Canvas.h"
#include "host/stream/scene/Scene.h"

namespace zarvo::host {

/** Draws one person of the scene: head and shoulders, hair and what else marks who it is; the
 * head as it is held, the eyes looking where the gaze says and open as far as they are. */
void DrawPerson(const Scene& scene, const Face& face, Canvas& canvas);

}  // namespace zarvo::host
