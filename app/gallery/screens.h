// Every screen of the program and how to come to it.
#pragma once

#include "app/gallery/stage.h"

#include <functional>
#include <vector>

namespace corvane::gallery {

struct Screen {
    const char* name;
    std::function<QPixmap(Stage&)> shoot;
};

std::vector<Screen> screens();
/// Those of the service order, static routes and VLANs; screens() holds them too.
std::vector<Screen> routingScreens();
/// Those of the ping monitor and the sweep.
std::vector<Screen> pingScreens();
/// Those of the video router.
std::vector<Screen> routerScreens();

} // namespace corvane::gallery
