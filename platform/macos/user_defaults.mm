// NSUserDefaults keeps property lists: booleans, numbers, text, bytes, dates, lists and dictionaries of
// these.
#include "platform/macos/mac_services.h"

#include <QByteArray>
#include <QDateTime>
#include <QMetaType>
#include <QStringList>
#include <QVariantList>

#import <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

namespace corvane {

namespace {

/// Lists and dictionaries nested deeper than this are left out.
constexpr int maxDepth = 32;

QVariant variantOf(id value, int depth = 0);

QVariant numberOf(NSNumber* number) {
    const CFTypeRef plain = (__bridge CFTypeRef)number;
    if (CFGetTypeID(plain) == CFBooleanGetTypeID()) return QVariant(static_cast<bool>(number.boolValue));
    if (CFNumberIsFloatType(static_cast<CFNumberRef>(plain))) return QVariant(number.doubleValue);
    return QVariant(static_cast<qlonglong>(number.longLongValue));
}

/// A list of texts alone is a string list.
QVariant listOf(NSArray* array, int depth) {
    QVariantList list;
    QStringList texts;
    for (id element in array) {
        const QVariant value = variantOf(element, depth + 1);
        if (!value.isValid()) continue;
        if (value.typeId() == QMetaType::QString) texts.append(value.toString());
        list.append(value);
    }
    if (texts.size() == list.size()) return texts;
    return list;
}

QVariantMap mapOf(NSDictionary* dictionary, int depth) {
    QVariantMap map;
    for (id key in dictionary) {
        if (![key isKindOfClass:[NSString class]]) continue;
        const QVariant value = variantOf(dictionary[key], depth + 1);
        if (value.isValid()) map.insert(QString::fromNSString(static_cast<NSString*>(key)), value);
    }
    return map;
}

QVariant variantOf(id value, int depth) {
    if (depth > maxDepth) return {};
    if ([value isKindOfClass:[NSString class]]) return QString::fromNSString(static_cast<NSString*>(value));
    if ([value isKindOfClass:[NSNumber class]]) return numberOf(static_cast<NSNumber*>(value));
    if ([value isKindOfClass:[NSData class]]) return QByteArray::fromNSData(static_cast<NSData*>(value));
    if ([value isKindOfClass:[NSDate class]]) return QDateTime::fromNSDate(static_cast<NSDate*>(value));
    if ([value isKindOfClass:[NSArray class]]) return listOf(static_cast<NSArray*>(value), depth);
    if ([value isKindOfClass:[NSDictionary class]]) return mapOf(static_cast<NSDictionary*>(value), depth);
    return {};
}

id objectOf(const QVariant& value, int depth = 0);

NSArray* arrayOf(const QVariantList& list, int depth) {
    NSMutableArray* array = [NSMutableArray array];
    for (const QVariant& element : list) {
        if (const id object = objectOf(element, depth + 1)) [array addObject:object];
    }
    return array;
}

NSDictionary* dictionaryOf(const QVariantMap& map, int depth) {
    NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
        if (const id object = objectOf(entry.value(), depth + 1))
            dictionary[entry.key().toNSString()] = object;
    }
    return dictionary;
}

/// nil for what a property list can't hold.
id objectOf(const QVariant& value, int depth) {
    if (depth > maxDepth) return nil;
    switch (value.typeId()) {
    case QMetaType::Bool:
        return @(value.toBool() ? YES : NO);
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return @(value.toLongLong());
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return @(value.toULongLong());
    case QMetaType::Float:
    case QMetaType::Double:
        return @(value.toDouble());
    case QMetaType::QString:
        return value.toString().toNSString();
    case QMetaType::QByteArray:
        return value.toByteArray().toNSData();
    case QMetaType::QDateTime:
        return value.toDateTime().toNSDate();
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
        return arrayOf(value.toList(), depth);
    case QMetaType::QVariantMap:
        return dictionaryOf(value.toMap(), depth);
    default:
        return nil;
    }
}

class StandardDefaults final : public UserDefaults {
  public:
    QVariant value(const QString& key) const override {
        @autoreleasepool {
            return variantOf([NSUserDefaults.standardUserDefaults objectForKey:key.toNSString()]);
        }
    }

    void setValue(const QString& key, const QVariant& value) override {
        @autoreleasepool {
            const id object = objectOf(value);
            if (!object) return remove(key);
            [NSUserDefaults.standardUserDefaults setObject:object forKey:key.toNSString()];
        }
    }

    void remove(const QString& key) override {
        @autoreleasepool {
            [NSUserDefaults.standardUserDefaults removeObjectForKey:key.toNSString()];
        }
    }

    QVariantMap domain(const QString& name) const override {
        @autoreleasepool {
            NSDictionary* settings =
                [NSUserDefaults.standardUserDefaults persistentDomainForName:name.toNSString()];
            return mapOf(settings, 0);
        }
    }
};

} // namespace

std::unique_ptr<UserDefaults> makeMacUserDefaults() {
    return std::make_unique<StandardDefaults>();
}

} // namespace corvane
