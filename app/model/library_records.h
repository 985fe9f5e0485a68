// What the library's lists have in common: records with an id and a name, changed in place.
#pragma once

#include "core/support/uuid.h"

#include <QString>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace corvane::records {

template <typename Record>
auto find(std::vector<Record>& records, const Uuid& id) {
    return std::find_if(records.begin(), records.end(),
                        [&](const Record& record) { return record.id == id; });
}

template <typename Record>
void add(std::vector<Record>& records, Record record) {
    while (record.id.isNil() || find(records, record.id) != records.end()) record.id = Uuid::generate();
    records.push_back(std::move(record));
}

template <typename Record>
bool update(std::vector<Record>& records, const Record& record) {
    const auto found = find(records, record.id);
    if (found == records.end()) return false;
    *found = record;
    return true;
}

template <typename Record>
std::optional<Record> take(std::vector<Record>& records, const Uuid& id) {
    const auto found = find(records, id);
    if (found == records.end()) return std::nullopt;
    Record record = std::move(*found);
    records.erase(found);
    return record;
}

template <typename Record>
const Record* duplicate(std::vector<Record>& records, const Uuid& id) {
    const auto found = find(records, id);
    if (found == records.end()) return nullptr;
    Record copy = *found;
    copy.id = Uuid::generate();
    copy.name += " copy";
    return &*records.insert(std::next(found), std::move(copy));
}

/// Before that record, or at the end.
template <typename Record>
void insert(std::vector<Record>& records, Record record, const std::optional<Uuid>& before) {
    records.insert(before ? find(records, *before) : records.end(), std::move(record));
}

/// The name of an undo step: Edit Preset “Show”.
inline QString step(const char* verb, const char* what, const std::string& name) {
    // On one line: QUndoCommand takes what follows a new line for another text.
    return QStringLiteral("%1 %2 “%3”")
        .arg(QLatin1String(verb), QLatin1String(what), QString::fromStdString(name).simplified());
}

} // namespace corvane::records
