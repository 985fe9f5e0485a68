// Where a device client stands with its device.
#pragma once

#include <QString>

namespace corvane {

class ConnectionStatus {
  public:
    enum class Kind { failed, idle, connecting, connected };

    /// An English sentence that the user sees.
    static ConnectionStatus failed(const QString& message) { return {Kind::failed, message}; }
    static ConnectionStatus idle() { return {Kind::idle, {}}; }
    static ConnectionStatus connecting() { return {Kind::connecting, {}}; }
    static ConnectionStatus connected() { return {Kind::connected, {}}; }

    Kind kind() const { return kind_; }
    /// Empty unless failed.
    const QString& message() const { return message_; }
    bool isFailed() const { return kind_ == Kind::failed; }
    bool isConnected() const { return kind_ == Kind::connected; }

    friend bool operator==(const ConnectionStatus&, const ConnectionStatus&) = default;

  private:
    ConnectionStatus(Kind kind, QString message) : kind_(kind), message_(std::move(message)) {}
    Kind kind_;
    QString message_;
};

} // namespace corvane
