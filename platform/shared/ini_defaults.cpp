#include "platform/shared/ini_defaults.h"

#include <QFileInfo>
#include <QSettings>

namespace corvane {

namespace {

QVariantMap readAll(const QString& file) {
    QVariantMap values;
    QSettings settings(file, QSettings::IniFormat);
    settings.setFallbacksEnabled(false);
    for (const QString& key : settings.allKeys()) values.insert(key, settings.value(key));
    return values;
}

} // namespace

IniDefaults::IniDefaults(const QString& file) : file_(file), values_(readAll(file)) {
    writer_.setMaxThreadCount(1);
}

IniDefaults::~IniDefaults() {
    writer_.waitForDone();
}

QVariant IniDefaults::value(const QString& key) const {
    return values_.value(key);
}

void IniDefaults::setValue(const QString& key, const QVariant& value) {
    values_.insert(key, value);
    writer_.start([file = file_, key, value] { QSettings(file, QSettings::IniFormat).setValue(key, value); });
}

void IniDefaults::remove(const QString& key) {
    values_.remove(key);
    writer_.start([file = file_, key] { QSettings(file, QSettings::IniFormat).remove(key); });
}

QVariantMap IniDefaults::domain(const QString& name) const {
    // A domain is a file's name, never a way out of the folder.
    if (name.isEmpty() || name.startsWith('.') || name.contains('/')) return {};
    const QString file = QFileInfo(file_).path() + '/' + name + ".ini";
    return QFileInfo::exists(file) ? readAll(file) : QVariantMap();
}

} // namespace corvane
