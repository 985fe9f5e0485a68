#include "hosttools/networkmanager/kernel.h"

#include <cerrno>
#include <cstring>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace corvane::networkmanager::kernel {

namespace {

struct Request {
    nlmsghdr header{};
    ifaddrmsg address{};
    char attributes[64]{};
};

void append(Request& request, unsigned short type, std::uint32_t networkOrder) {
    char* end = reinterpret_cast<char*>(&request) + NLMSG_ALIGN(request.header.nlmsg_len);
    rtattr attribute{};
    attribute.rta_len = RTA_LENGTH(sizeof networkOrder);
    attribute.rta_type = type;
    std::memcpy(end, &attribute, sizeof attribute);
    std::memcpy(end + RTA_LENGTH(0), &networkOrder, sizeof networkOrder);
    request.header.nlmsg_len =
        static_cast<std::uint32_t>(NLMSG_ALIGN(request.header.nlmsg_len) + RTA_LENGTH(sizeof networkOrder));
}

/// The kernel's answer to one request as an errno value; 0 when it was carried out.
int ask(Request& request) {
    const int socket = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE);
    if (socket < 0) return errno;
    const timeval limit{2, 0};
    ::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    int result = 0;
    char answer[4096];
    if (::send(socket, &request, request.header.nlmsg_len, 0) < 0) {
        result = errno;
    } else if (const ssize_t count = ::recv(socket, answer, sizeof answer, 0);
               count < static_cast<ssize_t>(NLMSG_LENGTH(sizeof(nlmsgerr)))) {
        result = count < 0 ? errno : EIO;
    } else {
        nlmsghdr header{};
        std::memcpy(&header, answer, sizeof header);
        nlmsgerr error{};
        std::memcpy(&error, answer + NLMSG_HDRLEN, sizeof error);
        result = header.nlmsg_type == NLMSG_ERROR ? -error.error : EIO;
    }
    ::close(socket);
    return result;
}

Request request(const std::string& device, unsigned short type, unsigned short flags, int prefix) {
    Request made;
    made.header.nlmsg_len = NLMSG_LENGTH(sizeof(ifaddrmsg));
    made.header.nlmsg_type = type;
    made.header.nlmsg_flags = static_cast<unsigned short>(NLM_F_REQUEST | NLM_F_ACK | flags);
    made.address.ifa_family = AF_INET;
    made.address.ifa_prefixlen = static_cast<unsigned char>(prefix);
    made.address.ifa_index = ::if_nametoindex(device.c_str());
    return made;
}

std::string reason(int error) {
    // The one that scripts look for, in the BSDs' words.
    return error == EADDRNOTAVAIL ? "Can't assign requested address" : std::strerror(error);
}

} // namespace

std::optional<std::string> addAddress(const std::string& device, std::uint32_t ip, int prefix) {
    Request add = request(device, RTM_NEWADDR, NLM_F_CREATE | NLM_F_EXCL, prefix);
    append(add, IFA_LOCAL, htonl(ip));
    append(add, IFA_ADDRESS, htonl(ip));
    if (prefix < 31) append(add, IFA_BROADCAST, htonl(ip | (0xFFFFFFFFu >> prefix)));
    const int error = ask(add);
    if (error == 0 || error == EEXIST) return std::nullopt;
    return reason(error);
}

std::optional<std::string> removeAddress(const std::string& device, std::uint32_t ip) {
    Request remove = request(device, RTM_DELADDR, 0, 0);
    append(remove, IFA_LOCAL, htonl(ip));
    const int error = ask(remove);
    if (error == 0) return std::nullopt;
    return reason(error);
}

} // namespace corvane::networkmanager::kernel
