// How much a thread's work matters to the person at the machine, as far as the system can be told.
#pragma once

namespace corvane {

/// Marks the calling thread's work as asked for by the user, who waits for it.
void becomeUserInitiated();

} // namespace corvane
