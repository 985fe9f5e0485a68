// Whether the desktop wants a light or a dark look, where the desktop has a way of saying so that Qt doesn't
// know.
#pragma once

#include <QObject>

#include <functional>

namespace corvane {

/// Asks the desktop without waiting, then tells every change for as long as `context` lives: true for dark.
/// Never called where the desktop says nothing; then the look that Qt has found out stands.
void followDesktopAppearance(QObject* context, std::function<void(bool dark)> told);

} // namespace corvane
