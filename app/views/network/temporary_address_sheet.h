// Asks for a second address that a service's device carries until the next restart or network change.
#pragma once

#include "core/netconfig/service_info.h"

#include <QDialog>

class QLineEdit;
class QPushButton;

namespace corvane {

class AppModel;
class NoticeLines;

class TemporaryAddressSheet : public QDialog {
    Q_OBJECT

  public:
    TemporaryAddressSheet(const AppModel& model, const ServiceInfo& service, QWidget* parent = nullptr);
    ~TemporaryAddressSheet() override;
    /// Why a service can't carry one now; empty when it can. Null: there is no such service.
    static QString refusal(const ServiceInfo* service);

  signals:
    void asked(const std::string& service, const std::string& device, const std::string& ip,
               const std::string& mask);

  private:
    void judge();
    const AppModel& model_;
    std::string service_, device_;
    QLineEdit* ip_;
    QLineEdit* mask_;
    NoticeLines* ipNotices_ = nullptr;
    NoticeLines* maskNotices_ = nullptr;
    QPushButton* add_ = nullptr;
    bool typed_ = false;
};

} // namespace corvane
