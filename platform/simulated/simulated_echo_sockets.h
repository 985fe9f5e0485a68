// ICMP echo in the simulated Mac's network: who answers, and how fast, stands in its state file.
#pragma once

#include "platform/echo_socket.h"

namespace corvane {

class SimulatedEchoSockets final : public EchoSockets {
  public:
    explicit SimulatedEchoSockets(std::string stateFile) : stateFile_(std::move(stateFile)) {}
    std::unique_ptr<EchoSocket> open(const std::string& device) const override;

  private:
    std::string stateFile_;
};

} // namespace corvane
