#include "hosttools/networkmanager/kernel.h"

#include "core/netconfig/ipv4.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <ifaddrs.h>
#include <linux/ethtool.h>
#include <linux/if_packet.h>
#include <linux/sockios.h>
#include <memory>
#include <net/if.h>
#include <netinet/in.h>
#include <sstream>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace corvane::networkmanager::kernel {

namespace {

struct AddressListDeleter {
    void operator()(ifaddrs* list) const { ::freeifaddrs(list); }
};
using AddressList = std::unique_ptr<ifaddrs, AddressListDeleter>;

AddressList addressList() {
    ifaddrs* list = nullptr;
    ::getifaddrs(&list);
    return AddressList(list);
}

std::uint32_t hostOrder(const sockaddr* address) {
    sockaddr_in in{};
    std::memcpy(&in, address, sizeof in);
    return ntohl(in.sin_addr.s_addr);
}

bool isIPv4(const ifaddrs* entry, const std::string& device) {
    return entry->ifa_name && device == entry->ifa_name && entry->ifa_addr &&
           entry->ifa_addr->sa_family == AF_INET;
}

/// A socket for ioctl(2) and the request that names the device.
class Query {
  public:
    explicit Query(const std::string& device) : socket_(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
        std::strncpy(request.ifr_name, device.c_str(), IFNAMSIZ - 1);
    }
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;
    ~Query() {
        if (socket_ >= 0) ::close(socket_);
    }
    bool ask(unsigned long what) { return socket_ >= 0 && ::ioctl(socket_, what, &request) == 0; }

    ifreq request{};

  private:
    int socket_;
};

struct Flag {
    unsigned linux;
    std::uint32_t bsd;
    const char* name;
};
// The BSDs' net/if.h, in the order in which ifconfig prints them.
constexpr std::array flags{
    Flag{IFF_UP, 0x1, "UP"},
    Flag{IFF_BROADCAST, 0x2, "BROADCAST"},
    Flag{IFF_LOOPBACK, 0x8, "LOOPBACK"},
    Flag{IFF_POINTOPOINT, 0x10, "POINTOPOINT"},
    Flag{IFF_RUNNING, 0x40, "RUNNING"},
    Flag{IFF_NOARP, 0x80, "NOARP"},
    Flag{IFF_PROMISC, 0x100, "PROMISC"},
    Flag{IFF_ALLMULTI, 0x200, "ALLMULTI"},
    // No Ethernet adapter hears what it sends.
    Flag{IFF_BROADCAST, 0x800, "SIMPLEX"},
    Flag{IFF_MULTICAST, 0x8000, "MULTICAST"},
};

const char* mediaWord(std::uint32_t speed) {
    switch (speed) {
    case 10:
        return "10baseT/UTP";
    case 100:
        return "100baseTX";
    case 1000:
        return "1000baseT";
    case 2500:
        return "2500Base-T";
    case 5000:
        return "5000Base-T";
    case 10000:
        return "10GbaseT";
    default:
        return nullptr;
    }
}

/// What the link has settled on; nothing for a device that knows no speed.
std::optional<std::string> media(Query& query, bool link) {
    // The first call tells how many words of link modes the kernel has; the second gets everything.
    alignas(ethtool_link_settings) std::array<std::uint32_t, sizeof(ethtool_link_settings) / 4 + 3 * 128>
        words{};
    auto* settings = reinterpret_cast<ethtool_link_settings*>(words.data());
    settings->cmd = ETHTOOL_GLINKSETTINGS;
    query.request.ifr_data = reinterpret_cast<char*>(settings);
    if (!query.ask(SIOCETHTOOL) || settings->link_mode_masks_nwords >= 0) return std::nullopt;
    settings->cmd = ETHTOOL_GLINKSETTINGS;
    settings->link_mode_masks_nwords = static_cast<__s8>(-settings->link_mode_masks_nwords);
    if (!query.ask(SIOCETHTOOL)) return std::nullopt;
    const std::string mode = settings->autoneg == AUTONEG_ENABLE || settings->autoneg == AUTONEG_DISABLE
                                 ? "autoselect"
                                 : "<unknown type>";
    if (!link) return mode + " (none)";
    const char* word = mediaWord(settings->speed);
    if (!word) return mode;
    return mode + " (" + word + (settings->duplex == DUPLEX_HALF ? " <half-duplex>)" : " <full-duplex>)");
}

std::string macText(const unsigned char* bytes) {
    char text[18];
    std::snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", bytes[0], bytes[1], bytes[2], bytes[3],
                  bytes[4], bytes[5]);
    return text;
}

} // namespace

bool exists(const std::string& device) {
    return device.size() < IFNAMSIZ && ::if_nametoindex(device.c_str()) != 0;
}

bool hasAddress(const std::string& device, const std::string& ip) {
    const AddressList list = addressList();
    for (const ifaddrs* entry = list.get(); entry; entry = entry->ifa_next)
        if (isIPv4(entry, device) && IPv4::format(hostOrder(entry->ifa_addr)) == ip) return true;
    return false;
}

std::optional<hosttools::Interface> interface(const std::string& device) {
    Query query(device);
    if (!exists(device) || !query.ask(SIOCGIFFLAGS)) return std::nullopt;
    hosttools::Interface found;
    found.device = device;
    const unsigned bits = static_cast<unsigned short>(query.request.ifr_flags);
    for (const Flag& flag : flags) {
        if (!(bits & flag.linux)) continue;
        found.flagBits |= flag.bsd;
        found.flags.emplace_back(flag.name);
    }
    if (query.ask(SIOCGIFMTU)) found.mtu = query.request.ifr_mtu;
    const bool loopback = (bits & IFF_LOOPBACK) != 0;
    const bool link = (bits & IFF_UP) && (bits & IFF_RUNNING);
    if (!loopback) {
        found.active = link;
        found.media = media(query, link);
    }
    const AddressList list = addressList();
    for (const ifaddrs* entry = list.get(); entry; entry = entry->ifa_next) {
        if (!entry->ifa_name || device != entry->ifa_name || !entry->ifa_addr) continue;
        if (entry->ifa_addr->sa_family == AF_PACKET && !loopback) {
            sockaddr_ll hardware{};
            std::memcpy(&hardware, entry->ifa_addr, sizeof hardware);
            if (hardware.sll_halen == 6) found.mac = macText(hardware.sll_addr);
        }
        if (!isIPv4(entry, device)) continue;
        hosttools::Interface::Address address;
        address.ip = IPv4::format(hostOrder(entry->ifa_addr));
        address.prefix = entry->ifa_netmask
                             ? IPv4::prefixLength(IPv4::format(hostOrder(entry->ifa_netmask))).value_or(32)
                             : 32;
        if ((entry->ifa_flags & IFF_BROADCAST) && entry->ifa_broadaddr)
            address.broadcast = IPv4::format(hostOrder(entry->ifa_broadaddr));
        found.addresses.push_back(address);
    }
    return found;
}

std::vector<MetricRoute> defaultRoutes() {
    constexpr unsigned long routeUp = 0x1;
    constexpr unsigned long routeReject = 0x200;
    std::vector<MetricRoute> found;
    std::ifstream table("/proc/net/route");
    std::string line;
    std::getline(table, line);
    while (std::getline(table, line)) {
        std::istringstream fields(line);
        std::string device, destination, gateway, bits, references, use, mask;
        unsigned long metric = 0;
        fields >> device >> destination >> gateway >> bits >> references >> use >> metric >> mask;
        if (fields.fail() || destination != "00000000" || mask != "00000000") continue;
        const unsigned long set = std::strtoul(bits.c_str(), nullptr, 16);
        if (!(set & routeUp) || (set & routeReject)) continue;
        // The table prints the address as it lies in memory, in network order.
        const auto address = static_cast<std::uint32_t>(std::strtoul(gateway.c_str(), nullptr, 16));
        found.push_back({{address ? IPv4::format(ntohl(address)) : std::string(), device}, metric});
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const MetricRoute& a, const MetricRoute& b) { return a.metric < b.metric; });
    return found;
}

} // namespace corvane::networkmanager::kernel
