#include "platform/shared/ini_defaults.h"

#include <QFileInfo>

namespace corvane {

IniDefaults::IniDefaults(const QString& file) : settings_(file, QSettings::IniFormat) {
    settings_.setFallbacksEnabled(false);
}

QVariant IniDefaults::value(const QString& key) const {
    return settings_.value(key);
}

void IniDefaults::setValue(const QString& key, const QVariant& value) {
    settings_.setValue(key, value);
    settings_.sync();
}

void IniDefaults::remove(const QString& key) {
    settings_.remove(key);
    settings_.sync();
}

QVariantMap IniDefaults::domain(const QString& name) const {
    // A domain is a file's name, never a way out of the folder.
    if (name.isEmpty() || name.startsWith('.') || name.contains('/')) return {};
    const QString file = QFileInfo(settings_.fileName()).path() + '/' + name + ".ini";
    if (!QFileInfo::exists(file)) return {};
    const QSettings other(file, QSettings::IniFormat);
    QVariantMap result;
    for (const QString& key : other.allKeys()) result.insert(key, other.value(key));
    return result;
}

} // namespace corvane
