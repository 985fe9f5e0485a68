#include "app/views/window/alert_box.h"

#include "app/views/window/conventions.h"

#include <QDialogButtonBox>
#include <QPushButton>

namespace corvane {
namespace {

using namespace Qt::StringLiterals;

/// A tool may print megabytes; nobody reads more than this of it.
constexpr qsizetype longestText = 8000;

QString shortened(const QString& text) {
    return text.size() <= longestText ? text : text.left(longestText) + u"…"_s;
}

} // namespace

AlertPanel::AlertPanel(Alerts::Kind kind, const QString& message, const QString& details, QWidget* parent)
    : Panel(parent) {
    setObjectName(u"alert"_s);
    const bool warning = kind == Alerts::Kind::warning;
    setBadge(warning ? symbols::Symbol::warning : symbols::Symbol::info,
             warning ? theme::Tone::attention : theme::Tone::accent);
    if (conventions::isMac()) {
        // A Mac's alert has no title bar: its title is its first line.
        setMessage(windowTitle());
        setInformativeText(shortened(details.isEmpty() ? message : message + u"\n\n"_s + details));
    } else {
        // The first paragraph is the message, all that follows explains it.
        const qsizetype end = message.indexOf(u"\n\n"_s);
        QStringList more;
        if (end >= 0) more << message.mid(end + 2);
        if (!details.isEmpty()) more << details;
        setMessage(shortened(end < 0 ? message : message.left(end)));
        setInformativeText(shortened(more.join(u"\n\n"_s)));
    }
    auto* fine = buttons().addButton(u"OK"_s, QDialogButtonBox::AcceptRole);
    fine->setDefault(true);
    fine->setFocus();
}

void AlertBox::show(Kind kind, const QString& message, const QString& details) {
    AlertPanel panel(kind, message, details, window_ && window_->isVisible() ? window_.data() : nullptr);
    panel.execInFront();
}

} // namespace corvane
