#include "app/clients/subnet_sweep.h"

#include "app/clients/icmp_sweep.h"
#include "core/netconfig/ipv4.h"
#include "platform/thread_quality.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>

namespace corvane {

namespace {

/// Counts the requests that left.
class CountingSocket final : public EchoSocket {
  public:
    CountingSocket(std::unique_ptr<EchoSocket> socket, std::atomic_int& sent)
        : socket_(std::move(socket)), sent_(sent) {}
    std::optional<std::uint16_t> identifier() const override { return socket_->identifier(); }
    Sent send(std::uint32_t address, std::span<const std::uint8_t> message) override {
        const Sent sent = socket_->send(address, message);
        if (sent == Sent::yes) ++sent_;
        return sent;
    }
    std::size_t receive(std::span<std::uint8_t> buffer) override { return socket_->receive(buffer); }

  private:
    std::unique_ptr<EchoSocket> socket_;
    std::atomic_int& sent_;
};

/// Hands out the socket that was opened beforehand.
class OpenedSocket final : public EchoSockets {
  public:
    explicit OpenedSocket(std::unique_ptr<EchoSocket> socket) : socket_(std::move(socket)) {}
    std::unique_ptr<EchoSocket> open(const std::string&) const override { return std::move(socket_); }

  private:
    mutable std::unique_ptr<EchoSocket> socket_;
};

} // namespace

// A sweep on its thread. What the thread tells lies behind a mutex; Qt's event queue carries only the
// wake-up.
class SubnetSweep::Run : public QObject {
    Q_OBJECT

  public:
    struct News {
        int handled = 0;
        /// By address, in host order.
        std::map<std::uint32_t, double> found;
        bool ended = false;
    };

    Run(SubnetSweep& sweep, std::unique_ptr<EchoSocket> socket, std::vector<std::string> addresses)
        : sweep_(&sweep),
          thread_([this, sockets = OpenedSocket(std::make_unique<CountingSocket>(std::move(socket), sent_)),
                   asked = std::move(addresses)] { work(sockets, asked); }) {
        // While the thread runs it outlives the sweep that it was started for, but not the application.
        setParent(QCoreApplication::instance());
    }
    ~Run() override {
        cancel();
        thread_.join();
    }

    void cancel() { cancelled_ = true; }
    int sent() const { return sent_; }
    void letGo() {
        sweep_ = nullptr;
        cancel();
    }
    /// What is new since the last call.
    News take() {
        const std::lock_guard guard(lock_);
        told_ = false;
        News news = std::move(news_);
        news_ = {.handled = news.handled, .found = {}, .ended = news.ended};
        return news;
    }

    Q_INVOKABLE void wake() {
        bool ended = false;
        {
            const std::lock_guard guard(lock_);
            ended = news_.ended;
        }
        if (sweep_ && !ended && !sweep_->fold_.isActive()) sweep_->takeProgress();
        if (!ended) return;
        deleteLater();
        if (sweep_) sweep_->end();
    }

  private:
    void work(const EchoSockets& sockets, const std::vector<std::string>& addresses) {
        becomeUserInitiated();
        ICMPSweep::run(
            sockets, addresses, {}, perSecond, settle,
            [this](int handled) { tell([&] { news_.handled = handled; }); },
            [this](const std::string& address, double ms) {
                if (const auto value = IPv4::parse(address)) tell([&] { news_.found[*value] = ms; });
            },
            cancelled_);
        const std::lock_guard guard(lock_);
        news_.ended = true;
        post();
    }
    template <typename Change>
    void tell(const Change& change) {
        const std::lock_guard guard(lock_);
        change();
        if (!std::exchange(told_, true)) post();
    }
    void post() { QMetaObject::invokeMethod(this, "wake", Qt::QueuedConnection); }

    SubnetSweep* sweep_;
    std::atomic_bool cancelled_ = false;
    std::atomic_int sent_ = 0;
    std::mutex lock_;
    News news_;
    /// A wake-up is under way for what lies in the news.
    bool told_ = false;
    /// Last, since it uses all of the above.
    std::thread thread_;
};

SubnetSweep::SubnetSweep(const EchoSockets& sockets, QObject* parent) : QObject(parent), sockets_(sockets) {
    fold_.setInterval(50);
    fold_.setSingleShot(true);
    QObject::connect(&fold_, &QTimer::timeout, this, &SubnetSweep::takeProgress);
}

SubnetSweep::~SubnetSweep() {
    if (run_) run_->letGo();
}

void SubnetSweep::start(std::vector<std::string> addresses, const std::string& device) {
    if (run_) return;
    handled_ = 0;
    sentNothing_ = false;
    total_ = static_cast<int>(addresses.size());
    found_.clear();
    auto socket = sockets_.open(device);
    refused_ = !socket;
    if (socket) {
        try {
            run_ = new Run(*this, std::move(socket), std::move(addresses));
        } catch (const std::system_error&) {
            refused_ = true;
        }
    }
    emit runningChanged();
}

void SubnetSweep::cancel() {
    if (run_) run_->cancel();
}

void SubnetSweep::takeProgress() {
    if (!run_) return;
    const Run::News news = run_->take();
    if (news.handled == handled_ && news.found.empty()) return;
    handled_ = news.handled;
    for (const auto& [value, ms] : news.found) {
        const auto at = std::lower_bound(
            found_.begin(), found_.end(), value,
            [](const Found& found, std::uint32_t wanted) { return IPv4::parse(found.address) < wanted; });
        const std::string address = IPv4::format(value);
        if (at != found_.end() && at->address == address) {
            at->ms = ms;
        } else {
            found_.insert(at, {address, ms});
        }
    }
    fold_.start();
    emit progressed();
}

void SubnetSweep::end() {
    const QPointer self(this);
    takeProgress();
    if (!self) return;
    fold_.stop();
    sentNothing_ = handled_ > 0 && run_->sent() == 0;
    run_ = nullptr;
    emit runningChanged();
}

} // namespace corvane

#include "subnet_sweep.moc"
