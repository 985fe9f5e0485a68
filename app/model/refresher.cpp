#include "app/model/refresher.h"

#include <chrono>
#include <utility>

namespace corvane {

using namespace std::chrono_literals;

Refresher::Refresher(const Shell& shell, QObject* parent) : QObject(parent), shell_(shell) {
    timer_.setInterval(4s);
    connect(&timer_, &QTimer::timeout, this, &Refresher::refresh);
}

Refresher::~Refresher() {
    ending_ = true;
}

void Refresher::start() {
    timer_.start();
    refresh();
}

void Refresher::refresh() {
    if (refreshing_) return;
    refreshing_ = true;
    reader_.start([this] { return NetworkReader(shell_, &ending_).snapshot(); },
                  [this](const NetworkSnapshot& snapshot) {
                      refreshing_ = false;
                      if (std::exchange(outdated_, false)) refresh();
                      emit finished(snapshot);
                  });
}

void Refresher::refreshAfterChange() {
    outdated_ = refreshing_;
    refresh();
    QTimer::singleShot(2s, this, &Refresher::refresh);
}

} // namespace corvane
