#include "app/model/banner_state.h"

#include <chrono>

namespace corvane {

BannerState::BannerState(QObject* parent) : QObject(parent) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(std::chrono::seconds(3));
    connect(&timer_, &QTimer::timeout, this, &BannerState::clear);
}

void BannerState::show(const Banner& banner) {
    current_ = banner;
    timer_.start();
    emit changed();
}

void BannerState::showAfterwards(const Banner& banner) {
    if (current_)
        next_.push_back(banner);
    else
        show(banner);
}

void BannerState::clear() {
    if (!next_.empty()) {
        const Banner banner = next_.front();
        next_.pop_front();
        show(banner);
        return;
    }
    current_.reset();
    emit changed();
}

} // namespace corvane
