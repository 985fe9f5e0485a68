#include "platform/simulated/memory_keychain.h"

namespace corvane {

bool MemoryKeychain::exists(const std::string& service) {
    const std::lock_guard lock(mutex_);
    return items_.contains(service);
}

std::optional<Credentials> MemoryKeychain::load(const std::string& service) {
    const std::lock_guard lock(mutex_);
    const auto found = items_.find(service);
    if (found == items_.end()) return std::nullopt;
    return found->second;
}

void MemoryKeychain::remove(const std::string& service) {
    const std::lock_guard lock(mutex_);
    items_.erase(service);
}

std::optional<std::string> MemoryKeychain::add(const std::string& service, const std::string&,
                                               const Credentials& credentials) {
    const std::lock_guard lock(mutex_);
    items_.insert_or_assign(service, credentials);
    return std::nullopt;
}

} // namespace corvane
