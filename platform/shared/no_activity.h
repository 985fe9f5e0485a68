#pragma once

#include "platform/activity.h"

namespace corvane {

/// For systems that don't stretch the timers of a hidden window: there is nothing to hold off. Sleep of the
/// whole machine is the user's affair.
class NoActivity final : public ActivityAssertion {
  public:
    std::unique_ptr<Token> begin(const std::string&) override { return std::make_unique<Token>(); }
};

} // namespace corvane
