// The addressing of one network service as the system reports it.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace corvane {

struct CurrentConfig {
    /// dhcp, manual, or the system's own word for any other method.
    class Mode {
      public:
        enum class Kind { dhcp, manual, other };
        static Mode dhcp() { return Mode(Kind::dhcp, {}); }
        static Mode manual() { return Mode(Kind::manual, {}); }
        static Mode other(std::string word) { return Mode(Kind::other, std::move(word)); }
        Kind kind() const { return kind_; }
        bool isDHCP() const { return kind_ == Kind::dhcp; }
        bool isManual() const { return kind_ == Kind::manual; }
        /// The system's word; empty unless the kind is other.
        const std::string& word() const { return word_; }
        friend bool operator==(const Mode&, const Mode&) = default;

      private:
        Mode(Kind kind, std::string word) : kind_(kind), word_(std::move(word)) {}
        Kind kind_;
        std::string word_;
    };

    Mode mode = Mode::other("Off");
    std::optional<std::string> ip;
    /// As printed by the system.
    std::optional<std::string> subnet;
    std::optional<std::string> router;
    /// In the system's order; empty when none are set.
    std::vector<std::string> dns;

    /// "DHCP", "Manual" or the system's word.
    std::string modeLabel() const;

    friend bool operator==(const CurrentConfig&, const CurrentConfig&) = default;
};

} // namespace corvane
