// The right side of the window: the page of what is selected, made when it is first shown, the ping monitor
// below it or in its place, and over its top the banner and the sign of a change under way.
#pragma once

#include <QTimer>
#include <QWidget>

class QScrollArea;
class QSplitter;
class QStackedWidget;

namespace corvane {

class AppModel;
class EmptyState;
class GlobalPage;
class NetworkCommands;
class OverlayPill;
class PingPanel;
class PlannedVLANPage;
class RouterPage;
class ServiceOrderPage;
class ServicePage;

class DetailArea : public QWidget {
    Q_OBJECT

  public:
    DetailArea(AppModel& model, NetworkCommands& commands, QWidget* parent = nullptr);
    const OverlayPill& banner() const { return *banner_; }
    const OverlayPill& busySign() const { return *busy_; }
    /// Gives the keyboard to the first control of the page.
    void focusPage();

  private:
    void showPage();
    void showPing();
    void showBanner();
    void showBusy();
    void showNothing();

    AppModel& model_;
    NetworkCommands& commands_;
    QSplitter* split_;
    QScrollArea* pages_;
    QStackedWidget* stack_;
    ServicePage* servicePage_ = nullptr;
    GlobalPage* globalPage_ = nullptr;
    PlannedVLANPage* planPage_ = nullptr;
    ServiceOrderPage* orderPage_ = nullptr;
    RouterPage* routerPage_ = nullptr;
    PingPanel* pingPanel_ = nullptr;
    EmptyState* nothing_ = nullptr;
    OverlayPill* banner_;
    OverlayPill* busy_;
    QTimer busyWatch_;
};

} // namespace corvane
