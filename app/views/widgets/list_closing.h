// Boxes whose choices follow the model: nothing moves under a list that stands open, so what was put off
// meanwhile is made up for when it closes.
#pragma once

#include <QComboBox>

#include <functional>

namespace corvane {

/// `refill` is called each time the box's list has closed and what was chosen in it has been told, while
/// `context` lives.
void whenListCloses(QComboBox& box, QObject* context, std::function<void()> refill);

} // namespace corvane
