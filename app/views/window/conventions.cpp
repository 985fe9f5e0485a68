#include "app/views/window/conventions.h"

#include <QGuiApplication>

namespace corvane::conventions {

bool isMac() {
    return QGuiApplication::platformName() == QStringLiteral("cocoa");
}

bool keepsRunningWithoutWindow(bool trayShown) {
    return isMac() || trayShown;
}

} // namespace corvane::conventions
