// Preloaded by ./run when there is no display: Qt's VNC platform can be told its port but not its address and listens
// on every interface. A bind of that one port to "any" becomes a bind to loopback; every other call passes through.

#include <arpa/inet.h>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace {

using Bind = int (*)(int, const sockaddr*, socklen_t);

int vncPort = 0;

// Read once and taken out of the environment, so that no child process carries the library on.
__attribute__((constructor)) void readPort() {
    if (const char* text = std::getenv("WENDREL_VNC_PORT")) vncPort = std::atoi(text);
    unsetenv("WENDREL_VNC_PORT");
    unsetenv("LD_PRELOAD");
}

} // namespace

extern "C" int bind(int descriptor, const sockaddr* address, socklen_t length) {
    static const Bind next = reinterpret_cast<Bind>(dlsym(RTLD_NEXT, "bind"));
    if (vncPort != 0 && address->sa_family == AF_INET && length >= sizeof(sockaddr_in)) {
        sockaddr_in narrowed;
        std::memcpy(&narrowed, address, sizeof narrowed);
        if (ntohs(narrowed.sin_port) == vncPort && narrowed.sin_addr.s_addr == htonl(INADDR_ANY)) {
            narrowed.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
            return next(descriptor, reinterpret_cast<const sockaddr*>(&narrowed), sizeof narrowed);
        }
    }
    if (vncPort != 0 && address->sa_family == AF_INET6 && length >= sizeof(sockaddr_in6)) {
        sockaddr_in6 narrowed;
        std::memcpy(&narrowed, address, sizeof narrowed);
        if (ntohs(narrowed.sin6_port) == vncPort && IN6_IS_ADDR_UNSPECIFIED(&narrowed.sin6_addr)) {
            // The socket is dual-stack: the IPv4 loopback as a mapped address.
            inet_pton(AF_INET6, "::ffff:127.0.0.1", &narrowed.sin6_addr);
            return next(descriptor, reinterpret_cast<const sockaddr*>(&narrowed), sizeof narrowed);
        }
    }
    return next(descriptor, address, length);
}
