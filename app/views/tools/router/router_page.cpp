#include "app/views/tools/router/router_page.h"

#include "app/model/app_model.h"

namespace corvane {

RouterPage::RouterPage(AppModel& model, QWidget* parent) : QWidget(parent), model_(model) {}

} // namespace corvane
