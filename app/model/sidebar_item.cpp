#include "app/model/sidebar_item.h"

namespace corvane {

QString SidebarItem::identity() const {
    switch (kind_) {
    case Kind::service:
        return QStringLiteral("service-") + key_;
    case Kind::global:
        return QStringLiteral("global-") + key_;
    case Kind::plannedVLAN:
        return QStringLiteral("planned-") + key_;
    case Kind::serviceOrder:
        return QStringLiteral("order");
    case Kind::tool:
        return QStringLiteral("tool-") + key_;
    }
    return key_;
}

} // namespace corvane
