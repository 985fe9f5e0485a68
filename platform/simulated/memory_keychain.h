// A password store that ends with the program: a simulated network's password must not mix with real ones.
#pragma once

#include "platform/keychain.h"

#include <map>
#include <mutex>

namespace corvane {

/// Thread-safe, as the system's stores are.
class MemoryKeychain final : public Keychain {
  public:
    bool exists(const std::string& service) override;
    std::optional<Credentials> load(const std::string& service) override;
    void remove(const std::string& service) override;

  protected:
    std::optional<std::string> add(const std::string& service, const std::string& itemLabel,
                                   const Credentials& credentials) override;

  private:
    std::mutex mutex_;
    std::map<std::string, Credentials> items_;
};

} // namespace corvane
