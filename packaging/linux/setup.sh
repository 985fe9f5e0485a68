# Sourced by ./run and ./test: installs Debian packages that are missing. Needs root or sudo only when one is.

build_packages="g++ cmake ninja-build ccache pkg-config qt6-base-dev libgl-dev nlohmann-json3-dev libssl-dev libnm-dev libsecret-1-dev"
run_packages="libqt6gui6 libqt6dbus6 iproute2 iputils-ping fonts-dejavu-core"
test_packages="libgtest-dev libbenchmark-dev clang libclang-rt-14-dev file xvfb xauth x11-utils xdotool dbus network-manager dnsmasq-base sudo gnome-keyring npm procps util-linux python3"
bench_packages="libbenchmark-dev xvfb xauth fping dbus network-manager dnsmasq-base sudo openssl util-linux"

install_missing() {
    local missing="" package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed' && continue
        # Another way to have the same command counts too (a Node.js that brings its own npm).
        [ "$package" = npm ] && command -v npm >/dev/null && continue
        missing="$missing $package"
    done
    [ -z "$missing" ] && return 0
    local as_root=""
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null || { echo "Missing packages:$missing. Install them as root, then start again." >&2; return 1; }
        as_root=sudo
    fi
    echo "Installing Debian packages:$missing"
    # shellcheck disable=SC2086
    { $as_root apt-get update -qq && DEBIAN_FRONTEND=noninteractive $as_root apt-get install -qq -y --no-install-recommends $missing; } >/dev/null
}
