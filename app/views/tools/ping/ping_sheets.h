// Small sheets: the name of a group, and the name and address of a host. Each field is the user's once it was
// typed in; until then it follows the library.
#pragma once

#include "core/diagnostics/ping_group.h"

#include <QDialog>

class QLineEdit;
class QPushButton;

namespace corvane {

class AppModel;
class NoticeLines;

class GroupNameSheet : public QDialog {
    Q_OBJECT

  public:
    GroupNameSheet(const AppModel& model, const PingGroup& group, QWidget* parent = nullptr);
    ~GroupNameSheet() override;

  signals:
    void renamed(const corvane::Uuid& group, const std::string& name);

  private:
    const AppModel& model_;
    Uuid group_;
    QLineEdit* name_;
};

class HostSheet : public QDialog {
    Q_OBJECT

  public:
    HostSheet(const AppModel& model, const Uuid& group, const PingTarget& target, QWidget* parent = nullptr);
    ~HostSheet() override;

  signals:
    void saved(const corvane::Uuid& group, const corvane::PingTarget& target);

  private:
    void follow();
    void judge();

    const AppModel& model_;
    Uuid group_;
    PingTarget target_;
    QLineEdit *name_, *host_;
    NoticeLines* hostNotices_;
    QPushButton* save_;
};

} // namespace corvane
