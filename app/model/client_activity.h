// Holds the system's activity assertion while any tool is at work.
#pragma once

#include "platform/activity.h"

#include <memory>
#include <set>
#include <string>

namespace corvane {

class ClientActivity {
  public:
    /// The assertion outlives this object.
    explicit ClientActivity(ActivityAssertion& assertion) : assertion_(assertion) {}

    void setActive(const std::string& client, bool active) {
        if (active)
            clients_.insert(client);
        else
            clients_.erase(client);
        if (clients_.empty())
            token_.reset();
        else if (!token_)
            token_ = assertion_.begin("Watching devices on the network");
    }

  private:
    ActivityAssertion& assertion_;
    std::set<std::string> clients_;
    std::unique_ptr<ActivityAssertion::Token> token_;
};

} // namespace corvane
