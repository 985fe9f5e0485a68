// Asks the machine's owner to prove to be there (fingerprint, else the account's password).
#pragma once

#include <functional>
#include <string>

namespace corvane {

class OwnerCheck {
  public:
    virtual ~OwnerCheck() = default;
    /// Whether the machine can evaluate biometric authentication now.
    virtual bool available() const = 0;
    /// Starts asking; `answer` is called once, on any thread.
    virtual void evaluate(const std::string& reason, const std::string& fallbackTitle, double reuseSeconds,
                          std::function<void(bool)> answer) = 0;
};

} // namespace corvane
