// The static routes of a service: a table with a draft for each service that was looked at.
#pragma once

#include <QWidget>

#include <memory>
#include <string>

class QPushButton;

namespace corvane {

class AppModel;
class DraftBar;
class NetworkCommands;

class RoutesPane : public QWidget {
    Q_OBJECT

  public:
    RoutesPane(AppModel& model, NetworkCommands& commands, QWidget* parent = nullptr);
    ~RoutesPane() override;
    void setService(const std::string& service);
    /// For the row of actions above the pane.
    QPushButton* addButton() const;
    QPushButton* removeButton() const;
    DraftBar* bar() const;

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace corvane
