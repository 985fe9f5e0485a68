// The static routes of each service, as they were last read. Each reading runs off the main thread.
#pragma once

#include "app/model/background.h"
#include "core/netconfig/static_route.h"
#include "platform/shell.h"

#include <QObject>

#include <atomic>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

class RouteStore : public QObject {
    Q_OBJECT

  public:
    /// The shell outlives this object.
    explicit RouteStore(const Shell& shell, QObject* parent = nullptr);
    ~RouteStore() override;

    /// Nothing more is done while a reading of the service waits for its turn.
    void load(const std::string& service);
    /// Nothing until they were read.
    std::optional<std::vector<StaticRoute>> of(const std::string& service) const;
    /// What was read of a service that is gone.
    void forget(const std::string& service);

    /// Blocking. Nothing when the tool had no answer, or one longer than any table that is kept by hand.
    static std::optional<std::vector<StaticRoute>> read(const Shell& shell, const std::string& service);

  signals:
    void changed();
    /// A reading succeeded, whether it changed anything or not.
    void loaded(const std::string& service);

  private:
    void store(const std::string& service, std::vector<StaticRoute> routes);

    const Shell& shell_;
    std::map<std::string, std::vector<StaticRoute>> routes_;
    /// How often a service was forgotten: a reading asked for before that is worth nothing.
    std::map<std::string, unsigned> forgotten_;
    /// Whether the newest reading of a service hasn't begun yet; the reader's thread clears it.
    std::map<std::string, std::shared_ptr<std::atomic<bool>>> waiting_;
    std::atomic<bool> ending_ = false;
    Background reader_{QThread::LowPriority};
};

} // namespace corvane
