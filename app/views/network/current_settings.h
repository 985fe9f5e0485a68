// What a service is set to now, every value to be copied by a click.
#pragma once

#include "app/views/widgets/card.h"
#include "core/netconfig/service_info.h"

class QGridLayout;

namespace corvane {

class AddressRow;
class CopyLabel;
class ElidedLabel;
class NoticeLines;

class CurrentSettings : public Card {
    Q_OBJECT

  public:
    explicit CurrentSettings(QWidget* parent = nullptr);
    /// Null while the service hasn't been read or is gone: every value is then absent.
    /// `internet` says what the service has to do with internet.
    void setService(const ServiceInfo* service, const QString& internet = {});

  private:
    void addValue(QGridLayout* grid, int row, int column, const QString& caption, QWidget* value);
    ElidedLabel* mode_;
    CopyLabel* ip_;
    CopyLabel* subnet_;
    CopyLabel* router_;
    ElidedLabel* link_;
    ElidedLabel* speed_;
    CopyLabel* mac_;
    CopyLabel* device_;
    ElidedLabel* internet_;
    AddressRow* dns_;
    AddressRow* addresses_;
    NoticeLines* notices_;
};

} // namespace corvane
