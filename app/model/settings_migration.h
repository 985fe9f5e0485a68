// The one-time move of what the program kept under its older name "Corvane".
#pragma once

#include "platform/user_defaults.h"

#include <QString>

namespace corvane::SettingsMigration {

inline constexpr const char* olderDomain = "net.brannoch.Corvane";
inline constexpr const char* doneFlag = "migratedFromCorvane";

struct Folder {
    QString path;
    /// A sentence when the older folder couldn't be moved or the folder couldn't be made; else empty.
    QString problem;
};
/// The folder "Wendrel" inside the application-support folder: an older folder "Corvane" becomes it when it
/// doesn't exist yet; made when it is missing.
Folder settleFolder(const QString& applicationSupport);
/// Copies the older domain's settings once, never over a key that is set already.
void copyOlderDefaults(UserDefaults& defaults);

} // namespace corvane::SettingsMigration
