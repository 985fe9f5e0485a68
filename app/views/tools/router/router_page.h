// The video router's page: the connection, and either the desk or why there is none.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

class QStackedWidget;

namespace corvane {

class AppModel;
class ConnectionBar;
class EmptyState;
class RouterActions;
class RouterDesk;

class RouterPage : public QWidget {
    Q_OBJECT

  public:
    explicit RouterPage(AppModel& model, QWidget* parent = nullptr);
    const RouterActions& actions() const;

  private:
    void refresh();
    /// Whether what the desk shows came from the host that is asked for now.
    bool deskIsKnown() const;
    QString lostSince() const;

    AppModel& model_;
    ConnectionBar* bar_;
    QStackedWidget* body_;
    EmptyState* message_;
    RouterDesk* desk_;
    QTimer folded_, ages_;
    /// Of the desk's content; empty when it has none.
    QString shownHost_;
    QElapsedTimer lost_;
    /// Milliseconds that the router had been silent when it was lost.
    qint64 silence_ = 0;
    /// The user has asked for a connection and waits for it.
    bool awaited_ = false;
};

} // namespace corvane
