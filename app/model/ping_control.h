// Which ping group is watched, and whether: the active group, shown or not, paused or not.
#pragma once

#include "app/clients/ping_monitor.h"
#include "core/netconfig/preset_library.h"
#include "platform/user_defaults.h"

#include <QObject>

#include <memory>
#include <optional>

namespace corvane {

/// The monitor runs while it is shown, isn't paused and its group exists.
class PingControl : public QObject {
    Q_OBJECT

  public:
    /// Both outlive this object.
    PingControl(UserDefaults& defaults, PingMonitor& monitor, QObject* parent = nullptr);

    /// The active group of the last run, if it still exists in this library.
    void load(std::shared_ptr<const PresetLibrary> library);
    /// The library has changed.
    void follow(std::shared_ptr<const PresetLibrary> library);

    /// Nothing when its group is gone; it comes back with the group.
    std::optional<Uuid> activeGroup() const;
    void setActiveGroup(const std::optional<Uuid>& group);
    bool shown() const { return shown_; }
    /// Showing the monitor without an active group makes the first one active.
    void setShown(bool shown);
    bool paused() const { return paused_; }
    void setPaused(bool paused);

  signals:
    void changed();

  private:
    const PingGroup* group() const;
    /// Kept for the next start.
    void choose(const std::optional<Uuid>& group);
    void updateMonitor();

    UserDefaults& defaults_;
    PingMonitor& monitor_;
    std::shared_ptr<const PresetLibrary> library_;
    std::optional<Uuid> active_;
    bool shown_ = false;
    bool paused_ = false;
};

} // namespace corvane
