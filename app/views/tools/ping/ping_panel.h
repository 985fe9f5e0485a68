// The ping monitor's face: the hosts of the active group, each with its state, history and route.
#pragma once

#include <QWidget>

#include <memory>

class QMenu;

namespace corvane {

class AppModel;
class Uuid;

class PingPanel : public QWidget {
    Q_OBJECT

  public:
    explicit PingPanel(AppModel& model, QWidget* parent = nullptr);
    ~PingPanel() override;
    /// Below another page, where it can be closed, or a page of its own.
    void setDocked(bool docked);
    /// Makes it the current one and takes the focus.
    void chooseHost(const Uuid& host);
    /// What can be done with the host that is chosen when it is done. Without keys, which the list takes
    /// itself.
    void fillHostMenu(QMenu& menu);

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace corvane
