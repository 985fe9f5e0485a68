// Tells the system that the program is at work, so that its timers aren't stretched while its window is hidden.
#pragma once

#include <memory>
#include <string>

namespace corvane {

class ActivityAssertion {
  public:
    /// Held as long as the token lives.
    class Token {
      public:
        virtual ~Token() = default;
    };
    virtual ~ActivityAssertion() = default;
    virtual std::unique_ptr<Token> begin(const std::string& reason) = 0;
};

} // namespace corvane
