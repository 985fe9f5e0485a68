// Small settings, kept by key.
#pragma once

#include <QString>
#include <QVariant>
#include <QVariantMap>

namespace corvane {

class UserDefaults {
  public:
    virtual ~UserDefaults() = default;
    /// An invalid variant when the key isn't set.
    virtual QVariant value(const QString& key) const = 0;
    /// Booleans, numbers, strings, string lists and byte arrays.
    virtual void setValue(const QString& key, const QVariant& value) = 0;
    virtual void remove(const QString& key) = 0;
    /// Everything kept under another program's domain; empty when there is none.
    virtual QVariantMap domain(const QString& name) const = 0;
};

} // namespace corvane
