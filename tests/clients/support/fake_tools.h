// Tools that a test holds in its hands: each start is kept until the test says how it ended.
#pragma once

#include "platform/tool_starter.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace corvane::testing {

class FakeTools final : public ToolStarter {
  public:
    struct Call {
        std::string path;
        std::vector<std::string> arguments;
    };
    /// Every start so far.
    std::vector<Call> calls;
    /// Jobs that were destroyed before they ended.
    int cancelled = 0;

    std::unique_ptr<Job> start(const std::string& path, const std::vector<std::string>& arguments,
                               Done done) override {
        calls.push_back({path, arguments});
        running_.emplace(calls.size() - 1, std::move(done));
        return std::make_unique<Running>(*this, calls.size() - 1);
    }
    /// Of the tools that run, the one started first with this last argument ends.
    bool end(const std::string& lastArgument, const Result& result) {
        for (const auto& [number, done] : running_) {
            if (calls[number].arguments.back() != lastArgument) continue;
            auto ending = running_.extract(number);
            ending.mapped()(result);
            return true;
        }
        return false;
    }
    std::size_t running() const { return running_.size(); }

  private:
    struct Running : Job {
        Running(FakeTools& owner, std::size_t which) : tools(owner), number(which) {}
        ~Running() override { tools.cancelled += static_cast<int>(tools.running_.erase(number)); }
        FakeTools& tools;
        std::size_t number;
    };
    std::map<std::size_t, Done> running_;
};

} // namespace corvane::testing
