// Where the platforms differ in manners.
#pragma once

namespace corvane::conventions {

/// Alerts, menus and windows behave as on a Mac.
bool isMac();
/// Closing the last window leaves the program running: always on a Mac; elsewhere only while a tray shows
/// that it runs and gives a way back.
bool keepsRunningWithoutWindow(bool trayShown);

} // namespace corvane::conventions
