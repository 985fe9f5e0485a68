// The head of a device's page: what it is, the host to connect to, where the connection stands and, after a
// failure, why.
#pragma once

#include "app/clients/connection_status.h"

#include <QWidget>

class QLineEdit;
class QPushButton;

namespace corvane {

class ElidedLabel;
class NoticeLines;

/// Knows no model: it shows what it is told and says what is wanted of the connection. A line is kept free
/// for why it failed, so that nothing below moves.
class ConnectionBar : public QWidget {
    Q_OBJECT

  public:
    /// `caption` names the kind of device and its port: "Blackmagic Videohub · TCP 9990".
    ConnectionBar(const QString& title, const QString& caption, QWidget* parent = nullptr);

    /// The host last used, while the user hasn't begun to write another one.
    void setHost(const QString& host);
    QString host() const;
    /// `connectedTo` is the host of that status; empty when idle.
    void setStatus(const ConnectionStatus& status, const QString& connectedTo);
    /// What the device says about itself, beside "Connected".
    void setDetail(const QString& detail);
    /// "Connected", "Failed" and the like, as shown.
    QString statusText() const;

  signals:
    /// Trimmed and never empty.
    void connectAsked(const QString& host);
    void disconnectAsked();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    class Mark;
    /// Whether the button and Return connect to what stands in the field, or else disconnect.
    bool offersConnect() const;
    void act();
    void refresh();

    ConnectionStatus status_ = ConnectionStatus::idle();
    QString connectedTo_, detail_, failure_;
    /// What stood in the field before the user began to write.
    QString given_;
    QLineEdit* host_;
    QPushButton* button_;
    Mark* mark_;
    ElidedLabel* words_;
    NoticeLines* notices_;
};

} // namespace corvane
