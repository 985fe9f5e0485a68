// The desktop portal's setting "color-scheme": 0 no preference, 1 dark, 2 light.
// https://flatpak.github.io/xdg-desktop-portal/docs/doc-org.freedesktop.portal.Settings.html
#include "app/views/system/appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFileInfo>
#include <QPointer>

namespace corvane {
namespace {

constexpr auto portal = "org.freedesktop.portal.Desktop";
constexpr auto path = "/org/freedesktop/portal/desktop";
constexpr auto settings = "org.freedesktop.portal.Settings";
constexpr auto space = "org.freedesktop.appearance";
constexpr auto key = "color-scheme";
constexpr int replyMilliseconds = 2000;

/// Without a bus of the session the client library would try to start one, which takes its time.
bool hasSessionBus() {
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

/// The portal wraps its answer once or twice, depending on its age.
QVariant unwrapped(QVariant value) {
    for (int depth = 0; depth < 3 && value.canConvert<QDBusVariant>(); ++depth) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

class PortalAppearance : public QObject {
    Q_OBJECT

  public:
    PortalAppearance(QObject* context, std::function<void(bool)> told)
        : QObject(context), told_(std::move(told)) {
        auto bus = QDBusConnection::sessionBus();
        bus.connect(portal, path, settings, QStringLiteral("SettingChanged"), this,
                    SLOT(changed(QString, QString, QDBusVariant)));
        auto call = QDBusMessage::createMethodCall(portal, path, settings, QStringLiteral("Read"));
        call << QString(space) << QString(key);
        auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, replyMilliseconds), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
            const QDBusPendingReply<QDBusVariant> reply = *watcher;
            if (!reply.isError()) tell(reply.value().variant());
            watcher->deleteLater();
        });
    }

  private slots:
    void changed(const QString& changedSpace, const QString& changedKey, const QDBusVariant& value) {
        if (changedSpace == space && changedKey == key) tell(value.variant());
    }

  private:
    void tell(const QVariant& value) {
        const uint scheme = unwrapped(value).toUInt();
        if (scheme == 1 || scheme == 2) told_(scheme == 1);
    }

    std::function<void(bool)> told_;
};

} // namespace

void followDesktopAppearance(QObject* context, std::function<void(bool)> told) {
    if (hasSessionBus()) new PortalAppearance(context, std::move(told));
}

} // namespace corvane

#include "appearance.moc"
