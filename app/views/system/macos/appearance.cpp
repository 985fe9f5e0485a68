// The native style follows the system by itself.
#include "app/views/system/appearance.h"

namespace corvane {

void followDesktopAppearance(QObject*, std::function<void(bool)>) {}

} // namespace corvane
