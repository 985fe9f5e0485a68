// The password store of a Linux desktop: the Secret Service, through libsecret.
#pragma once

#include "platform/keychain.h"

namespace corvane {

/// Items of the default collection with the attributes "service" and "account". Where no Secret Service
/// answers, nothing exists, nothing is loaded and `save` says so. `exists` never unlocks anything and never
/// asks; `load`, `remove` and `save` may have the desktop ask for the collection's password.
class SecretServiceKeychain final : public Keychain {
  public:
    bool exists(const std::string& service) override;
    std::optional<Credentials> load(const std::string& service) override;
    void remove(const std::string& service) override;

  protected:
    std::optional<std::string> add(const std::string& service, const std::string& itemLabel,
                                   const Credentials& credentials) override;
};

} // namespace corvane
