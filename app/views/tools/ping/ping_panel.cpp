#include "app/views/tools/ping/ping_panel.h"

#include "app/model/app_model.h"

namespace corvane {

PingPanel::PingPanel(AppModel& model, QWidget* parent) : QWidget(parent), model_(model) {}

void PingPanel::setDocked(bool docked) {
    docked_ = docked;
}

} // namespace corvane
