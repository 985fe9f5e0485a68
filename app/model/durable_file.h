// Files that are there whole after a crash or a power cut: written beside, synced, renamed into place, and
// the folder synced too. Every function blocks on the disk.
#pragma once

#include <QString>

#include <optional>
#include <string>
#include <string_view>

namespace corvane::DurableFile {

/// Files larger than this aren't read.
inline constexpr long long maxBytes = 256LL * 1024 * 1024;

struct ReadResult {
    std::optional<std::string> bytes;
    /// Why there are none, e.g. "Permission denied"; empty when the file doesn't exist.
    QString error;
};
/// Regular files only.
ReadResult read(const QString& path);
/// Nothing when the bytes are on the disk under that name, else why not. The old file stays until then.
std::optional<QString> write(const QString& path, std::string_view bytes);
/// Makes what was created, renamed or removed in the folder last.
std::optional<QString> syncFolder(const QString& folder);

} // namespace corvane::DurableFile
