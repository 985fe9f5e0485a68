#pragma once

#include "platform/owner_check.h"

namespace corvane {

/// Linux has no common way to ask for the owner's fingerprint with the account's password behind it (fprintd
/// knows fingerprints only), so there is nothing to evaluate, and the lock on the saved password stands open.
class NoOwnerCheck final : public OwnerCheck {
  public:
    bool available() const override { return false; }
    void evaluate(const std::string&, const std::string&, double, std::function<void(bool)> answer) override {
        answer(false);
    }
};

} // namespace corvane
