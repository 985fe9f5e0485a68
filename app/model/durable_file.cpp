#include "app/model/durable_file.h"

#include "platform/posix/descriptor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace corvane::DurableFile {

namespace {

QString reason(int error) {
    return QString::fromLocal8Bit(std::strerror(error));
}

/// 0, or the error number.
int writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) return errno;
        if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

} // namespace

ReadResult read(const QString& path) {
    const QFileInfo info(path);
    if (!info.exists() && !info.isSymLink()) return {};
    // A pipe or a device could block for ever or never end.
    if (info.exists() && !info.isFile()) return {std::nullopt, QStringLiteral("It isn't a regular file")};
    if (info.size() > maxBytes) return {std::nullopt, QStringLiteral("The file is too large")};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {std::nullopt, file.errorString()};
    const QByteArray bytes = file.read(maxBytes);
    if (file.error() != QFileDevice::NoError) return {std::nullopt, file.errorString()};
    return {bytes.toStdString(), {}};
}

std::optional<QString> write(const QString& path, std::string_view bytes) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return file.errorString();
    // Straight to the descriptor: QSaveFile forgets why a write stopped half-way.
    if (const int error = writeAll(file.handle(), bytes)) {
        file.cancelWriting();
        return reason(error);
    }
    // commit() syncs too but passes over a failure, and a full disk may show only here.
    if (const int number = posix::syncToMedium(file.handle()); number != 0) {
        const QString error = reason(number);
        file.cancelWriting();
        return error;
    }
    if (!file.commit()) return file.errorString();
    return syncFolder(QFileInfo(QFileInfo(path).canonicalFilePath()).path());
}

std::optional<QString> syncFolder(const QString& folder) {
    const int descriptor = open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return reason(errno);
    std::optional<QString> error;
    // EINVAL: the file system has nothing to sync for a folder.
    const int number = posix::syncToMedium(descriptor);
    if (number != 0 && number != EINVAL) error = reason(number);
    close(descriptor);
    return error;
}

} // namespace corvane::DurableFile
