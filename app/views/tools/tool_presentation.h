// How the tools are called and signed, and the short line that says what each is doing.
#pragma once

#include "app/model/tool.h"
#include "app/views/widgets/symbols.h"

#include <QString>

namespace corvane {

class AppModel;

QString toolTitle(Tool tool);
/// One line on what it is for.
QString toolPurpose(Tool tool);
symbols::Symbol toolSign(Tool tool);
/// "7 of 8 answer", "Connected · 10.0.0.5"; what it is for while it does nothing.
QString toolDetail(AppModel& model, Tool tool);

} // namespace corvane
