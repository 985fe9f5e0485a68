// Older states of the preset library beside it: one copy a day, and a copy of a file that couldn't be read.
#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace corvane::DatedCopies {

/// This many of the copies named "presets 2026-11-21.json" are kept, the newest.
inline constexpr int kept = 10;

/// Copies the file unless the day has its copy already, then removes the oldest ones too many. Files of any
/// other name are never touched. Nothing when the day has a copy or there was no file, else why the copy
/// wasn't made.
std::optional<QString> keepDay(const QString& file, const QDate& day);

struct SetAside {
    /// The copy's name, e.g. "presets unreadable 2026-11-21 16.05.09.json"; empty when it couldn't be made.
    QString name;
    QString error;
};
/// Puts a copy of a file that isn't understood beside it; a file that can't even be read is renamed.
SetAside keepUnreadable(const QString& file, const QDateTime& now);

} // namespace corvane::DatedCopies
