// One sweep at a time over a list of addresses, as a page shows it: progress, what was found, cancel.
#pragma once

#include <QObject>
#include <QTimer>

#include <memory>
#include <string>
#include <vector>

namespace corvane {

class EchoSockets;

/// idle → (start) sweeping → (all sent, replies awaited, or cancel) idle with what was found. Destroyed while
/// sweeping it doesn't wait: the thread ends by itself, at the latest with the application object.
class SubnetSweep : public QObject {
    Q_OBJECT

  public:
    struct Found {
        std::string address;
        double ms = 0;
        friend bool operator==(const Found&, const Found&) = default;
    };

    /// Requests a second, and how long late replies are awaited, in seconds.
    static constexpr int perSecond = 500;
    static constexpr double settle = 1.0;

    /// The sockets outlive the sweep.
    explicit SubnetSweep(const EchoSockets& sockets, QObject* parent = nullptr);
    ~SubnetSweep() override;

    /// Nothing while a sweep runs. `device` is the BSD name of the interface that the requests leave by.
    void start(std::vector<std::string> addresses, const std::string& device);
    /// What was found so far stays. The sweep has ended when `runningChanged` says so, within 0.1 s.
    void cancel();

    bool isRunning() const { return run_ != nullptr; }
    /// Addresses handled so far, of how many.
    int handled() const { return handled_; }
    int total() const { return total_; }
    /// By address, lowest first.
    const std::vector<Found>& found() const { return found_; }
    /// The system gave no socket for it: nothing could be sent.
    bool refused() const { return refused_; }
    /// The last sweep had its socket, and yet the system let none of its requests out: a firewall, or no way
    /// to the network.
    bool sentNothing() const { return sentNothing_; }

  signals:
    void runningChanged();
    /// Handled or found grew; folded to at most one in 50 ms, and one at the end.
    void progressed();

  private:
    class Run;

    void takeProgress();
    void end();

    const EchoSockets& sockets_;
    /// Set while a sweep runs. It deletes itself when its thread has ended.
    Run* run_ = nullptr;
    QTimer fold_;
    int handled_ = 0;
    int total_ = 0;
    std::vector<Found> found_;
    bool refused_ = false;
    bool sentNothing_ = false;
};

} // namespace corvane
