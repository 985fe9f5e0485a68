#include "app/main/single_instance.h"

#include <QDir>
#include <QLocalSocket>

namespace corvane {

// Both stand beside the program's own folder: that one may still have to be moved from an older name.
static QString beside(const QString& applicationSupport, const char* name) {
    return QDir(applicationSupport).filePath(QLatin1String(name));
}

SingleInstance::SingleInstance(const QString& applicationSupport)
    : lock_(beside(applicationSupport, "Wendrel.lock")) {
    QDir().mkpath(applicationSupport);
    // A lock whose process is gone is taken over, however old it is; a living one's never.
    lock_.setStaleLockTime(0);
    const QString socket = beside(applicationSupport, "Wendrel.socket");
    if (lock_.tryLock(0)) {
        listen(socket);
        return;
    }
    if (lock_.error() != QLockFile::LockFailedError) return;
    first_ = false;
    QLocalSocket running;
    running.connectToServer(socket);
    running.waitForConnected(2000);
}

void SingleInstance::listen(const QString& socket) {
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    // Left by a program that was killed: the lock is ours.
    QLocalServer::removeServer(socket);
    connect(&server_, &QLocalServer::newConnection, this, [this] {
        while (auto* connection = server_.nextPendingConnection()) connection->deleteLater();
        emit asked();
    });
    server_.listen(socket);
}

} // namespace corvane
