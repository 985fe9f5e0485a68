// What the user wants beside what the system has.
#pragma once

#include <functional>
#include <utility>

namespace corvane {

/// Follows the system until it is made to differ; from then on readings leave it alone until it is the same
/// again.
template <typename Value>
class Draft {
  public:
    /// Whether two values mean the same to the system.
    using Same = std::function<bool(const Value&, const Value&)>;
    explicit Draft(Same same = std::equal_to<Value>()) : same_(std::move(same)) {}

    const Value& value() const { return value_; }
    const Value& system() const { return system_; }
    void set(Value value) {
        value_ = std::move(value);
        settle();
    }
    void revert() {
        value_ = system_;
        settle();
    }
    /// A reading of the system.
    void follow(const Value& system) {
        const bool own = differs(), news = !same_(system, system_);
        system_ = system;
        overtaken_ = overtaken_ || (own && news);
        if (!own && !same_(value_, system)) value_ = system;
        settle();
    }
    bool differs() const { return !same_(value_, system_); }
    /// The system has changed since the draft began to differ from it.
    bool overtaken() const { return overtaken_; }

  private:
    void settle() { overtaken_ = overtaken_ && differs(); }
    Same same_;
    Value value_, system_;
    bool overtaken_ = false;
};

} // namespace corvane
