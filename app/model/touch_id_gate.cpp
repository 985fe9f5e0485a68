#include "app/model/touch_id_gate.h"

#include <QEventLoop>
#include <QTimer>

#include <atomic>
#include <memory>

namespace corvane {

bool TouchIDGate::authorize(const std::string& reason) {
    if (!enabled_ || !check_.available()) return true;
    if (*lastSuccess_ && clock_() - **lastSuccess_ < validity) return true;

    enum Answer { none, denied, allowed };
    // The answer may come on any thread, and after this call has given up.
    const auto answer = std::make_shared<std::atomic<Answer>>(none);
    check_.evaluate(reason, "Use Mac Password", std::chrono::duration<double>(validity).count(),
                    [answer](bool success) { answer->store(success ? allowed : denied); });
    const auto clock = clock_;
    const auto lastSuccess = lastSuccess_;
    while (answer->load() == none) {
        QEventLoop loop;
        QTimer::singleShot(std::chrono::milliseconds(50), &loop, [&loop] { loop.quit(); });
        // -1: the program is quitting and no loop turns any more.
        if (loop.exec() == -1) return false;
    }
    if (answer->load() != allowed) return false;
    *lastSuccess = clock();
    return true;
}

} // namespace corvane
