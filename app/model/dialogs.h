// What the model asks of whoever talks to the user. Nothing below a view opens a dialog by itself.
#pragma once

#include "platform/privileged_runner.h"

#include <QString>

#include <optional>

namespace corvane {

class PasswordPrompt {
  public:
    struct Answer {
        Credentials credentials;
        /// "Remember in Keychain" was checked.
        bool remember = false;
    };
    virtual ~PasswordPrompt() = default;
    /// Modal. `purpose` completes "Wendrel needs an administrator password to ". Nothing when the user
    /// cancelled or gave no password.
    virtual std::optional<Answer> ask(const QString& purpose, bool retry) = 0;
};

class Alerts {
  public:
    enum class Kind { informational, warning };
    virtual ~Alerts() = default;
    /// Modal, titled "Wendrel".
    virtual void show(Kind kind, const QString& message, const QString& details) = 0;
};

} // namespace corvane
