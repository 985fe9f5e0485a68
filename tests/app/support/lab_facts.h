// What the kernel and NetworkManager say inside the lab, asked past the program under test.
#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>

#include <climits>

namespace corvane::testing {

/// Milliseconds that anything in the lab may take.
inline constexpr int patience = 20000;

inline QByteArray output(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(patience);
    return process.readAllStandardOutput().trimmed();
}

/// "10.5.0.40/24" and so on.
inline QStringList kernelAddresses(const QString& device) {
    QStringList addresses;
    const auto links =
        QJsonDocument::fromJson(output("ip", {"-j", "-4", "addr", "show", "dev", device})).array();
    for (const auto& link : links)
        for (const auto& info : link.toObject()["addr_info"].toArray())
            addresses.append(info.toObject()["local"].toString() + '/' +
                             QString::number(info.toObject()["prefixlen"].toInt()));
    return addresses;
}

/// "10.5.0.1 en5" of the default route that counts: the one with the lowest metric.
inline QString kernelRouter() {
    QString best;
    int lowest = INT_MAX;
    for (const auto& value : QJsonDocument::fromJson(output("ip", {"-j", "-4", "route"})).array()) {
        const auto route = value.toObject();
        if (route["dst"].toString() != "default" || route["metric"].toInt() >= lowest) continue;
        lowest = route["metric"].toInt();
        best = route["gateway"].toString() + ' ' + route["dev"].toString();
    }
    return best;
}

inline QStringList managerSays(const QString& field, const QString& device) {
    return QString::fromUtf8(output("nmcli", {"-g", field, "device", "show", device}))
        .replace(" | ", "\n")
        .split('\n', Qt::SkipEmptyParts);
}

} // namespace corvane::testing
