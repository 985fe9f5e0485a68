// The page of one network service: its current settings, its link and its presets.
#pragma once

#include <QWidget>

#include <memory>
#include <string>

namespace corvane {

class AppModel;
class NetworkCommands;

class ServicePage : public QWidget {
    Q_OBJECT

  public:
    ServicePage(AppModel& model, NetworkCommands& commands, QWidget* parent = nullptr);
    ~ServicePage() override;
    void setService(const std::string& name);
    const std::string& service() const;

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace corvane
