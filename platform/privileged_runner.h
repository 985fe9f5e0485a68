// Runs commands with administrator rights.
#pragma once

#include "core/netconfig/privileged_script.h"
#include "core/support/secret.h"

#include <optional>
#include <string>

namespace corvane {

struct Credentials {
    std::string user;
    Secret password;
};

class PrivilegedRunner {
  public:
    virtual ~PrivilegedRunner() = default;
    /// Runs one request and judges its outcome. Blocks until the script has ended.
    virtual ApplyResult run(const PrivilegedRequest& request, const std::optional<Credentials>& credentials) = 0;
    /// Whether `run` has to be called on the main thread; otherwise it is called on another one.
    virtual bool needsMainThread() const = 0;
    /// False when the program already has the rights: then nobody is asked and no credentials are given.
    virtual bool needsPassword() const = 0;
};

} // namespace corvane
