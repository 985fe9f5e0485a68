// The page of the service order: a list to drag, or to move by keyboard, and put on the system as a whole.
#pragma once

#include <QWidget>

#include <memory>

namespace corvane {

class AppModel;
class NetworkCommands;

class ServiceOrderPage : public QWidget {
    Q_OBJECT

  public:
    ServiceOrderPage(AppModel& model, NetworkCommands& commands, QWidget* parent = nullptr);
    ~ServiceOrderPage() override;

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace corvane
