// Settings in an INI file, or in memory.
#pragma once

#include "platform/user_defaults.h"

#include <QThreadPool>

namespace corvane {

/// One file per domain, side by side in one folder: "<folder>/<domain>.ini". Each change is written in
/// the background, in order, whole and under a lock (QSettings): it syncs the file, which may take longer
/// than a frame. The last ones are waited for at the end. The format keeps texts: a Boolean or a number is
/// read as a text variant that converts back, and a list of one text as that text; read them with toBool(),
/// toInt(), toStringList().
class IniDefaults final : public UserDefaults {
  public:
    explicit IniDefaults(const QString& file);
    ~IniDefaults() override;
    QVariant value(const QString& key) const override;
    void setValue(const QString& key, const QVariant& value) override;
    void remove(const QString& key) override;
    QVariantMap domain(const QString& name) const override;

  private:
    const QString file_;
    QVariantMap values_;
    QThreadPool writer_;
};

/// Gone when the program ends; there are no other domains.
class MemoryDefaults final : public UserDefaults {
  public:
    QVariant value(const QString& key) const override { return values_.value(key); }
    void setValue(const QString& key, const QVariant& value) override { values_.insert(key, value); }
    void remove(const QString& key) override { values_.remove(key); }
    QVariantMap domain(const QString&) const override { return {}; }

  private:
    QVariantMap values_;
};

/// The program's own settings domain.
inline constexpr const char* defaultsDomain = "app.halvorant.WendrelX";

} // namespace corvane
