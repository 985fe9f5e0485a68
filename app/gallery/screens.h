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

} // namespace corvane::gallery
