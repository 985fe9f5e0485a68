// A Videohub as its maker's "Videohub Ethernet Protocol" describes it (Videohub Developer Information, as
// printed at the end of the Micro Videohub and Universal Videohub manuals; field order and the blocks of
// version 2.8 after github.com/sohonetlabs/bmd_videohub, example.md, a dump of a Videohub 10x10 12G).
// Texts in, texts out: sockets are the server's. Nothing here uses the program's own codec.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvane::sim {

class VideohubRouter {
  public:
    struct Setup {
        int inputs = 12, outputs = 12;
        std::string model = "Blackmagic Videohub 12x12 12G";
        /// "true"; "false" without a router behind the server; "needs_update" with firmware it can't use.
        std::string present = "true";
    };
    enum class Section { device, inputLabels, outputLabels, locks, routing, configuration };
    /// Whoever can hold a lock: all that comes from one address, says the document.
    using Holder = std::string;

    /// What became of a client's block: refused, answered with the whole section, or carried out.
    struct Outcome {
        enum class Kind { ignored, refused, acknowledged, whole, changed };
        Kind kind = Kind::refused;
        Section section = Section::device;
        /// Of a change, in the order of the block.
        std::vector<int> entries = {};
        /// For the person who watches.
        std::string note = {};
    };

    explicit VideohubRouter(Setup setup);

    /// All that a new client is told; without a usable router little more than that.
    std::string prelude(const Holder& client) const;
    /// Everything but the preamble, as sent when another router is found.
    std::string everything(const Holder& client) const;
    /// A section with these entries, or with all of them.
    std::string block(Section section, const Holder& client) const;
    std::string block(Section section, const std::vector<int>& entries, const Holder& client) const;
    /// A client's block: its header, colon included, and its lines. Refused as a whole if any line is bad.
    Outcome take(std::string_view header, const std::vector<std::string>& lines, const Holder& client);
    void setPresent(const std::string& value) { setup_.present = value; }

    const std::vector<int>& routing() const { return routing_; }
    const std::vector<std::string>& outputLabels() const { return outputLabels_; }

  private:
    Outcome takeLabels(Section section, const std::vector<std::string>& lines);
    Outcome takeRoutes(const std::vector<std::string>& lines, const Holder& client);
    Outcome takeLocks(const std::vector<std::string>& lines, const Holder& client);
    Outcome takeConfiguration(const std::vector<std::string>& lines);
    std::string entryText(Section section, int index, const Holder& client) const;
    int countOf(Section section) const;

    Setup setup_;
    std::vector<std::string> inputLabels_, outputLabels_;
    std::vector<int> routing_;
    /// Empty when unlocked.
    std::vector<Holder> locks_;
    bool takeMode_ = false;
};

} // namespace corvane::sim
