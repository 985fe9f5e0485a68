// The password store: one administrator password, kept by the system.
#pragma once

#include "platform/privileged_runner.h"

#include <optional>
#include <string>

namespace corvane {

class Keychain {
  public:
    static constexpr const char* currentService = "app.halvorant.WendrelX.admin";
    /// Written by an older version of the program; still read and removed.
    static constexpr const char* olderService = "net.brannoch.Corvane.admin";
    static constexpr const char* label = "Wendrel (administrator password)";

    virtual ~Keychain() = default;
    /// Each may block on the store: for a worker thread.
    virtual bool exists(const std::string& service) = 0;
    /// The first item of that service, or nothing.
    virtual std::optional<Credentials> load(const std::string& service) = 0;
    virtual void remove(const std::string& service) = 0;
    /// Removes any item under both names, then adds one under the current name. A sentence when that failed.
    std::optional<std::string> save(const Credentials& credentials) {
        remove(currentService);
        remove(olderService);
        return add(currentService, label, credentials);
    }

  protected:
    virtual std::optional<std::string> add(const std::string& service, const std::string& itemLabel,
                                           const Credentials& credentials) = 0;
};

} // namespace corvane
