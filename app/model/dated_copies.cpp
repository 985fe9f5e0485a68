#include "app/model/dated_copies.h"

#include "app/model/durable_file.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace corvane::DatedCopies {

namespace {

void removeOldest(QDir folder) {
    static const QRegularExpression pattern(
        QStringLiteral("\\Apresets ([0-9]{4}-[0-9]{2}-[0-9]{2})\\.json\\z"));
    QStringList copies;
    for (const QFileInfo& entry : folder.entryInfoList(QDir::Files | QDir::NoSymLinks | QDir::Hidden)) {
        const auto match = pattern.match(entry.fileName());
        if (match.hasMatch() && QDate::fromString(match.captured(1), Qt::ISODate).isValid())
            copies.append(entry.fileName());
    }
    copies.sort();
    while (copies.size() > kept) folder.remove(copies.takeFirst());
}

} // namespace

std::optional<QString> keepDay(const QString& file, const QDate& day) {
    const QDir folder = QFileInfo(file).dir();
    const QString copy = folder.filePath(QStringLiteral("presets %1.json").arg(day.toString(Qt::ISODate)));
    if (QFileInfo::exists(copy)) return std::nullopt;
    const auto read = DurableFile::read(file);
    if (!read.bytes) return read.error.isEmpty() ? std::nullopt : std::optional(read.error);
    if (auto error = DurableFile::write(copy, *read.bytes)) return error;
    removeOldest(folder);
    return std::nullopt;
}

SetAside keepUnreadable(const QString& file, const QDateTime& now) {
    const QDir folder = QFileInfo(file).dir();
    const QString stem =
        QStringLiteral("presets unreadable %1").arg(now.toString(QStringLiteral("yyyy-MM-dd HH.mm.ss")));
    QString name = stem + QStringLiteral(".json");
    for (int number = 2; QFileInfo::exists(folder.filePath(name)); ++number)
        name = QStringLiteral("%1 %2.json").arg(stem).arg(number);

    const auto read = DurableFile::read(file);
    if (read.bytes) {
        if (const auto error = DurableFile::write(folder.filePath(name), *read.bytes)) return {{}, *error};
        return {name, {}};
    }
    QDir renaming = folder;
    if (!renaming.rename(QFileInfo(file).fileName(), name)) return {{}, read.error};
    if (const auto error = DurableFile::syncFolder(folder.path())) return {{}, *error};
    return {name, {}};
}

} // namespace corvane::DatedCopies
