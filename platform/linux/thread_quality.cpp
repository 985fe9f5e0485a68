#include "platform/thread_quality.h"

namespace corvane {

// Threads start out alike here, and only root may raise one above the others.
void becomeUserInitiated() {}

} // namespace corvane
