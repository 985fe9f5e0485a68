#include "app/model/sidebar_state.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr const char* hiddenKey = "hiddenServices";
constexpr const char* collapsedKey = "sidebar.collapsed";
constexpr const char* sortKey = "sidebar.sortsByState";

QSet<QString> toSet(const QVariant& value) {
    const QStringList list = value.toStringList();
    return {list.begin(), list.end()};
}

QStringList toList(const QSet<QString>& set) {
    QStringList list(set.begin(), set.end());
    list.sort();
    return list;
}

/// Puts `key` in or takes it out; whether that changed anything.
bool toggle(QSet<QString>& set, const QString& key, bool in) {
    if (set.contains(key) == in) return false;
    if (in)
        set.insert(key);
    else
        set.remove(key);
    return true;
}

} // namespace

SidebarState::SidebarState(UserDefaults& defaults, QObject* parent) : QObject(parent), defaults_(defaults) {}

void SidebarState::load() {
    hidden_ = toSet(defaults_.value(hiddenKey));
    collapsed_ = toSet(defaults_.value(collapsedKey));
    const QVariant sort = defaults_.value(sortKey);
    sortsByState_ = !sort.isValid() || sort.toBool();
}

void SidebarState::select(const std::optional<SidebarItem>& item) {
    if (item == selection_) return;
    selection_ = item;
    emit selectionChanged();
}

void SidebarState::settleSelection(const NetworkSnapshot& network) {
    if (pendingSelection_) {
        const auto found =
            std::any_of(network.services.begin(), network.services.end(),
                        [&](const ServiceInfo& info) { return info.name == *pendingSelection_; });
        if (found) {
            const auto item = SidebarItem::service(*pendingSelection_);
            pendingSelection_.reset();
            select(item);
        }
    }
    if (!selection_) select(defaultService(network));
}

void SidebarState::setHidden(const std::string& service, bool hidden) {
    if (!toggle(hidden_, QString::fromStdString(service), hidden)) return;
    defaults_.setValue(hiddenKey, toList(hidden_));
    emit changed();
}

void SidebarState::setExpanded(const QString& group, bool expanded) {
    if (!toggle(collapsed_, group, !expanded)) return;
    defaults_.setValue(collapsedKey, toList(collapsed_));
    emit changed();
}

void SidebarState::setSortsByState(bool byState) {
    if (byState == sortsByState_) return;
    sortsByState_ = byState;
    defaults_.setValue(sortKey, byState);
    emit changed();
}

std::vector<ServiceInfo> SidebarState::visibleServices(const NetworkSnapshot& network) const {
    struct Row {
        int rank;
        std::ptrdiff_t place;
        const ServiceInfo* info;
    };
    std::vector<Row> rows;
    for (const ServiceInfo& info : network.services) {
        if (isHidden(info.name)) continue;
        // Services that the order doesn't hold come last.
        const auto place = std::find(network.serviceOrder.begin(), network.serviceOrder.end(), info.name);
        rows.push_back(
            {sortsByState_ ? info.state().sortRank() : 0, place - network.serviceOrder.begin(), &info});
    }
    std::stable_sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) {
        return a.rank != b.rank ? a.rank < b.rank : a.place < b.place;
    });
    std::vector<ServiceInfo> visible;
    visible.reserve(rows.size());
    for (const Row& row : rows) visible.push_back(*row.info);
    return visible;
}

std::optional<SidebarItem> SidebarState::defaultService(const NetworkSnapshot& network) const {
    const auto visible = visibleServices(network);
    for (const ServiceInfo& info : visible)
        if (info.state().isConnected()) return SidebarItem::service(info.name);
    if (!visible.empty()) return SidebarItem::service(visible.front().name);
    if (!network.services.empty()) return SidebarItem::service(network.services.front().name);
    return std::nullopt;
}

} // namespace corvane
