#include "platform/simulated/simulated_owner_check.h"

#include "hosttools/simulated/state.h"

#include <chrono>
#include <utility>

namespace corvane {

static constexpr std::chrono::milliseconds touchDelay{400};

static std::string ownerIn(const std::string& stateFile) {
    const simulated::LoadResult loaded = simulated::StateFile(stateFile).load();
    return loaded.state ? loaded.state->owner : "none";
}

SimulatedOwnerCheck::SimulatedOwnerCheck(std::string stateFile) : stateFile_(std::move(stateFile)) {}

SimulatedOwnerCheck::~SimulatedOwnerCheck() {
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
    }
    ending_.notify_all();
    for (std::thread& thread : threads_) thread.join();
}

bool SimulatedOwnerCheck::available() const {
    return ownerIn(stateFile_) != "none";
}

void SimulatedOwnerCheck::evaluate(const std::string&, const std::string&, double,
                                   std::function<void(bool)> answer) {
    threads_.emplace_back([this, answer = std::move(answer)] {
        std::unique_lock lock(mutex_);
        const bool ended = ending_.wait_for(lock, touchDelay, [this] { return ended_; });
        lock.unlock();
        answer(!ended && ownerIn(stateFile_) == "present");
    });
}

} // namespace corvane
