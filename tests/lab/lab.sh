#!/bin/bash
# A private network with a NetworkManager of its own, for one command:
#
#   tests/lab/lab.sh run [--user operator] [--profile NAME=DEVICE]... -- COMMAND...
#
# The command sees two adapters, en5 and en7, cabled to a "far side" in a second network namespace: there a DHCP server
# and router on each cable (10.5.0.1 leases 10.5.0.100 to en5, 10.7.0.1 leases 10.7.0.100 to en7), a host at
# .20 of each net, and 203.0.113.7 behind both routers. On en5's net there is a second router too, 10.5.0.2, and
# behind it a host, 10.50.0.20, which nobody but that router knows the way to. Nothing of the machine's own network, bus or
# settings is touched: mounts, processes and network stand in namespaces that end with this script, however it ends.
#
# For the command, in PATH:
#   lab-far CMD...           runs CMD in the far side
#   lab-cable en5 down|up    pulls or plugs the far end of a cable
#   lab-dhcp off|on          stops or starts the far side's DHCP server
#   lab-nm stop|start|restart
# and in the environment LAB=1, LAB_DIR (logs), LAB_USER and LAB_PASSWORD (a user who may sudo, with a password).
# NetworkManager lets only root change anything, as on a machine without a policy agent.
# Exit status: the command's; 77 with a line "SKIPPED: ..." where such namespaces can't be made.
set -eu

LAB_USER=operator
LAB_PASSWORD=orange-crate
LAB_UID=1999

skip() {
    echo "SKIPPED: $*"
    exit 77
}

outside() {
    [ "${1:-}" = run ] || { sed -n '2,5p' "$0" >&2; exit 64; }
    [ "$(id -u)" = 0 ] || skip "the lab needs root to make namespaces"
    for program in NetworkManager dnsmasq dbus-daemon ip nsenter setpriv sudo openssl; do
        PATH=$PATH:/usr/sbin:/sbin command -v "$program" >/dev/null || skip "the lab needs $program"
    done
    unshare --mount --net --pid --fork --kill-child true 2>/dev/null || skip "namespaces can't be made here"
    # With the process namespace everything inside ends when its first process does, even on kill -9.
    exec unshare --mount --propagation private --net --pid --fork --kill-child --mount-proc \
        env LAB_INSIDE=1 bash "$(readlink -f "$0")" "$@"
}

mounts() {
    # sysfs of this network namespace; read-only, or else NetworkManager waits for a udev that isn't there.
    mount -t sysfs -o ro sysfs /sys
    mount -t tmpfs -o mode=755 lab /run
    for folder in /etc/NetworkManager /var/lib/NetworkManager; do
        mkdir -p "$folder"
        mount -t tmpfs -o mode=755 lab "$folder"
    done
    mkdir -p /run/lab/bin /run/lab/etc /run/dbus /run/sudo "/run/user/$LAB_UID"
    chown "$LAB_UID" "/run/user/$LAB_UID"
    chmod 700 "/run/user/$LAB_UID"
}

user() {
    local etc=/run/lab/etc
    install -d -o "$LAB_UID" -g "$LAB_UID" -m 755 /run/lab/home
    cp --preserve=mode,ownership /etc/passwd /etc/group /etc/shadow "$etc"
    echo "$LAB_USER:x:$LAB_UID:$LAB_UID:Lab operator:/run/lab/home:/bin/bash" >>"$etc/passwd"
    echo "$LAB_USER:x:$LAB_UID:" >>"$etc/group"
    echo "$LAB_USER:$(openssl passwd -6 "$LAB_PASSWORD"):19000:0:99999:7:::" >>"$etc/shadow"
    # The password is asked every time. The environment of the tools is the system's, as it is under a plain sudo.
    printf '%s\n' 'Defaults timestamp_timeout=0,passwd_tries=1,!lecture' 'root ALL=(ALL) ALL' "$LAB_USER ALL=(ALL) ALL" \
        >"$etc/sudoers"
    chmod 440 "$etc/sudoers"
    local file
    for file in passwd group shadow sudoers; do
        [ -e "/etc/$file" ] || touch "/etc/$file"
        mount --bind "$etc/$file" "/etc/$file"
    done
}

helpers() {
    local bin=/run/lab/bin
    echo "exec nsenter --target $FAR --net -- \"\$@\"" >"$bin/lab-far"
    cat >"$bin/lab-cable" <<'SCRIPT'
exec lab-far ip link set "far${1#en}" "$2"
SCRIPT
    cat >"$bin/lab-dhcp" <<'SCRIPT'
[ ! -e /run/lab/dnsmasq.pid ] || kill "$(cat /run/lab/dnsmasq.pid)" 2>/dev/null || true
rm -f /run/lab/dnsmasq.pid
[ "$1" = off ] && exit 0
exec lab-far dnsmasq --conf-file=/run/lab/dnsmasq.conf
SCRIPT
    cat >"$bin/lab-nm" <<'SCRIPT'
if [ "$1" != start ]; then
    kill "$(cat /run/lab/nm.pid)"
    for i in $(seq 100); do kill -0 "$(cat /run/lab/nm.pid)" 2>/dev/null || break; sleep 0.05; done
fi
[ "$1" = stop ] && exit 0
NetworkManager --no-daemon </dev/null >>/run/lab/nm.log 2>&1 &
echo $! >/run/lab/nm.pid
for i in $(seq 200); do [ "$(nmcli -t -f RUNNING general 2>/dev/null)" = running ] && exit 0; sleep 0.05; done
echo "lab: NetworkManager doesn't answer" >&2
exit 1
SCRIPT
    sed -i '1i #!/bin/bash' "$bin"/*
    chmod 755 "$bin"/*
    export PATH="$bin:$PATH:/usr/sbin:/sbin"
}

# Makes a network namespace and says by which process it is known.
namespace() {
    unshare --net sleep infinity >/dev/null &
    while [ "$(readlink /proc/$!/ns/net)" = "$(readlink /proc/self/ns/net)" ]; do sleep 0.01; done
    echo $!
}

# A bridge joins the cable of en5 and the second router; the router's other side leads to one host.
second_router() {
    local router host port
    router=$(namespace)
    host=$(namespace)
    lab-far ip link add net5 type bridge
    lab-far ip link add room5 type veth peer name cable0 netns "$router"
    for port in far5 room5; do lab-far ip link set "$port" master net5 up; done
    nsenter --target "$router" --net sh -c "
        ip link add room0 type veth peer name cable0 netns $host
        ip address add 10.5.0.2/24 dev cable0
        ip address add 10.50.0.1/24 dev room0
        ip link set cable0 up
        ip link set room0 up
        echo 1 >/proc/sys/net/ipv4/ip_forward"
    nsenter --target "$host" --net sh -c '
        ip address add 10.50.0.20/24 dev cable0
        ip link set cable0 up
        ip route add default via 10.50.0.1'
}

far_side() {
    ip link set lo up
    FAR=$(namespace)
    helpers
    local net side
    for net in 5 7; do
        ip link add "en$net" address "02:00:5e:00:0$net:01" type veth peer name "far$net" netns "$FAR"
        side=far$net
        [ "$net" = 7 ] || { second_router; side=net5; }
        lab-far ip address add "10.$net.0.1/24" dev "$side"
        lab-far ip address add "10.$net.0.20/24" dev "$side"
        lab-far ip link set "far$net" up
        lab-far ip link set "$side" up
    done
    lab-far ip link set lo up
    lab-far ip address add 203.0.113.7/32 dev lo
    # Each cable answers for its own net only, as if the two ended in different rooms.
    lab-far sh -c 'echo 1 >/proc/sys/net/ipv4/ip_forward; echo 1 >/proc/sys/net/ipv4/conf/all/arp_ignore'
    cat >/run/lab/dnsmasq.conf <<'CONF'
port=0
bind-interfaces
interface=net5
interface=far7
except-interface=lo
dhcp-range=interface:net5,10.5.0.100,10.5.0.150,255.255.255.0,1h
dhcp-range=interface:far7,10.7.0.100,10.7.0.150,255.255.255.0,1h
dhcp-host=02:00:5e:00:05:01,10.5.0.100
dhcp-host=02:00:5e:00:07:01,10.7.0.100
dhcp-authoritative
no-ping
dhcp-leasefile=/run/lab/leases
pid-file=/run/lab/dnsmasq.pid
log-facility=/run/lab/dnsmasq.log
user=root
CONF
    lab-dhcp on
}

network_manager() {
    cat >/etc/NetworkManager/NetworkManager.conf <<'CONF'
[main]
plugins=keyfile
auth-polkit=root-only
dhcp=internal
dns=none
rc-manager=unmanaged
no-auto-default=*
[connectivity]
enabled=false
CONF
    dbus-daemon --system --nofork --nopidfile </dev/null >/run/lab/dbus.log 2>&1 &
    local i
    for i in $(seq 100); do [ -S /run/dbus/system_bus_socket ] && break; sleep 0.02; done
    lab-nm start
}

inside() {
    local user= profiles=()
    shift
    while [ $# -gt 0 ]; do
        case "$1" in
        --user) user=$2; shift 2 ;;
        --profile) profiles+=("$2"); shift 2 ;;
        --) shift; break ;;
        *) echo "lab: $1?" >&2; exit 64 ;;
        esac
    done
    mounts || skip "file systems can't be mounted here"
    user
    far_side
    network_manager
    local profile
    for profile in "${profiles[@]}"; do
        nmcli --wait 15 connection add type ethernet con-name "${profile%=*}" ifname "${profile#*=}" \
            connection.autoconnect yes >/dev/null
        nmcli --wait 15 connection up "${profile%=*}" >/dev/null
    done
    export LAB=1 LAB_DIR=/run/lab LAB_USER LAB_PASSWORD
    unset LAB_INSIDE
    local status=0
    if [ -n "$user" ]; then
        HOME=/run/lab/home USER=$user LOGNAME=$user XDG_RUNTIME_DIR=/run/user/$LAB_UID \
            setpriv --reuid="$LAB_UID" --regid="$LAB_UID" --clear-groups -- "$@" || status=$?
    else
        "$@" || status=$?
    fi
    exit "$status"
}

if [ -n "${LAB_INSIDE:-}" ]; then inside "$@"; else outside "$@"; fi
