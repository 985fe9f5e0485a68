// One sweep at a time over a list of addresses, as a page shows it: progress, what was found, cancel.
#pragma once

#include <QObject>
#include <QString>

#include <memory>
#include <string>
#include <vector>

namespace corvane {

class EchoSockets;

/// idle → (start) sweeping → (all sent, replies awaited, or cancel) idle with what was found.
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
    /// What was found so far stays.
    void cancel();

    bool isRunning() const;
    /// Addresses handled so far, of how many.
    int handled() const;
    int total() const;
    /// By address, lowest first.
    const std::vector<Found>& found() const;
    /// The system gave no socket for it: nothing could be sent.
    bool refused() const;

  signals:
    void runningChanged();
    /// Handled or found grew; folded to at most one in 50 ms.
    void progressed();

  private:
    struct Run;
    std::unique_ptr<Run> run_;
};

} // namespace corvane
