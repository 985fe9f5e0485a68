// Several hosts at once, a line each: added to a group, or as the first of a new one.
#pragma once

#include "core/diagnostics/host_lines.h"
#include "core/diagnostics/ping_group.h"

#include <QDialog>

class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace corvane {

class AppModel;
class Form;
class NoticeLines;

class HostsSheet : public QDialog {
    Q_OBJECT

  public:
    /// Without a group for a new one, which may stay without hosts. Lines that can't be used keep the sheet
    /// open.
    HostsSheet(const AppModel& model, const std::optional<Uuid>& group, QWidget* parent = nullptr);
    ~HostsSheet() override;

  signals:
    void hostsAsked(const corvane::Uuid& group, const std::vector<corvane::PingTarget>& targets);
    void groupAsked(const corvane::PingGroup& group);

  private:
    void build();
    void judge();
    void finish();

    const AppModel& model_;
    std::optional<Uuid> group_;
    /// What the text says now, without what the group has already.
    std::vector<HostLines::Host> hosts_;
    std::vector<std::string> unused_;
    /// The last paste was longer than what is taken.
    bool cut_ = false;
    Form* nameForm_ = nullptr;
    QLineEdit* name_ = nullptr;
    QPlainTextEdit* text_;
    NoticeLines *words_, *notices_;
    QPushButton* add_ = nullptr;
};

} // namespace corvane
