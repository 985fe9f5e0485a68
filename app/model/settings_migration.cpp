#include "app/model/settings_migration.h"

#include <QDir>
#include <QFileInfo>

namespace corvane::SettingsMigration {

Folder settleFolder(const QString& applicationSupport) {
    const QDir support(applicationSupport);
    Folder folder{support.filePath(QStringLiteral("Wendrel")), {}};
    const QString older = support.filePath(QStringLiteral("Corvane"));
    if (!QFileInfo::exists(folder.path) && QFileInfo(older).isDir() && !QDir().rename(older, folder.path)) {
        // Not made here, so that the next start can try the move again.
        folder.problem =
            QStringLiteral("The older folder “%1” couldn't be moved to “%2”.").arg(older, folder.path);
        return folder;
    }
    if (!QDir().mkpath(folder.path))
        folder.problem = QStringLiteral("The folder “%1” couldn't be made.").arg(folder.path);
    return folder;
}

void copyOlderDefaults(UserDefaults& defaults) {
    if (defaults.value(doneFlag).toBool()) return;
    static constexpr const char* keys[] = {"hiddenServices",  "activePingGroup", "requireTouchID",
                                           "winrelay.relays", "winrelay.macId",  "hyperdeck.recent",
                                           "projectors.hosts"};
    const QVariantMap older = defaults.domain(olderDomain);
    for (const char* key : keys)
        if (const QVariant value = older.value(key); value.isValid() && !defaults.value(key).isValid())
            defaults.setValue(key, value);
    defaults.setValue(doneFlag, true);
}

} // namespace corvane::SettingsMigration
