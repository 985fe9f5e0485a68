#!/bin/bash
# The tools over a real NetworkManager: after each change the kernel (ip), NetworkManager's own listing (nmcli) and
# the tool have to say the same. Run by lab.sh; the argument is the tool root.
set -u
root=$1
setup=$root/usr/sbin/networksetup
[ -x "$setup" ] || { echo "no tools under $root" >&2; exit 1; }
failures=0
checks=0

# is WHAT EXPECTED ACTUAL
is() {
    checks=$((checks + 1))
    [ "$2" = "$3" ] && return
    failures=$((failures + 1))
    printf 'FAILED: %s\n  expected: %s\n  actual:   %s\n' "$1" "$2" "$3"
}
# eventually SECONDS WHAT EXPECTED COMMAND...
eventually() {
    local limit=$1 what=$2 expected=$3 actual= i
    shift 3
    for i in $(seq $((limit * 20))); do
        actual=$("$@")
        [ "$actual" = "$expected" ] && break
        sleep 0.05
    done
    is "$what" "$expected" "$actual"
}
addresses() { ip -o -4 address show dev "$1" | awk '{print $4}' | tr '\n' ' ' | sed 's/ $//'; }
router() { ip -4 route show default | awk '{m = 0; for (i = 1; i < NF; i++) if ($i == "metric") m = $(i + 1); print m, $3, $5}' |
    sort -n | head -1 | cut -d' ' -f2-; }
said_router() { "$root/sbin/route" -n get default | awk '/gateway:/ {g = $2} /interface:/ {i = $2} END {print g, i}'; }
names() { "$setup" -listallnetworkservices | tail -n +2 | tr '\n' '|'; }
info() { "$setup" -getinfo "$1" | sed -n "s/^$2: //p"; }
mode() { "$setup" -getinfo "$1" | head -1; }
profile() { nmcli -t -g "$2" connection show "$1"; }
told() { "$root/sbin/ifconfig" "$1" | awk '$1 == "inet" {print $2}' | tr '\n' ' ' | sed 's/ $//'; }

is "services" "Show Net|Ethernet (en7)|" "$(names)"
is "hardware" "(Hardware Port: Ethernet, Device: en5)" "$("$setup" -listnetworkserviceorder | sed -n 3p)"
is "lease" "DHCP Configuration 10.5.0.100 10.5.0.1" "$(mode 'Show Net') $(info 'Show Net' 'IP address') $(info 'Show Net' Router)"

echo "== manual address with router and DNS"
start=$(date +%s%N)
is "no output" "" "$("$setup" -setmanual 'Show Net' 10.5.0.77 255.255.255.0 10.5.0.1)"
echo "manual address after $((($(date +%s%N) - start) / 1000000)) ms"
is "kernel address" "10.5.0.77/24" "$(addresses en5)"
is "told address" "10.5.0.77" "$(told en5)"
is "profile" "manual 10.5.0.77/24 10.5.0.1" "$(profile 'Show Net' ipv4.method,ipv4.addresses,ipv4.gateway | tr '\n' ' ' | sed 's/ $//')"
is "told" "Manual Configuration 10.5.0.77 255.255.255.0 10.5.0.1" \
    "$(mode 'Show Net') $(info 'Show Net' 'IP address') $(info 'Show Net' 'Subnet mask') $(info 'Show Net' Router)"
"$setup" -setdnsservers "Show Net" 9.9.9.9 1.1.1.1
is "DNS told" "9.9.9.9|1.1.1.1|" "$("$setup" -getdnsservers 'Show Net' | tr '\n' '|')"
is "DNS in the profile" "9.9.9.9,1.1.1.1" "$(profile 'Show Net' ipv4.dns | tr -d ' ')"
eventually 3 "DNS in use" "9.9.9.9 | 1.1.1.1" nmcli -g IP4.DNS device show en5
"$setup" -setmanual "Show Net" 10.5.0.78 255.255.0.0
is "a new address keeps DNS" "9.9.9.9|1.1.1.1|" "$("$setup" -getdnsservers 'Show Net' | tr '\n' '|')"
is "no router left" "none" "$(info 'Show Net' Router)"
is "kernel without router" "" "$(router)"
is "prefix" "10.5.0.78/16" "$(addresses en5)"

echo "== DHCP"
start=$(date +%s%N)
"$setup" -setdhcp "Show Net"
echo "setdhcp returned after $((($(date +%s%N) - start) / 1000000)) ms"
eventually 10 "lease again" "10.5.0.100/24" addresses en5
eventually 3 "lease told" "10.5.0.100" info "Show Net" "IP address"
echo "lease after $((($(date +%s%N) - start) / 1000000)) ms"
is "DNS of the service outlasts" "9.9.9.9|1.1.1.1|" "$("$setup" -getdnsservers 'Show Net' | tr '\n' '|')"
is "only its own servers" "yes" "$(profile 'Show Net' ipv4.ignore-auto-dns)"
"$setup" -setdnsservers "Show Net" Empty
is "DNS cleared" "There aren't any DNS Servers set on Show Net." "$("$setup" -getdnsservers 'Show Net')"
is "lease servers allowed" "no" "$(profile 'Show Net' ipv4.ignore-auto-dns)"
lab-dhcp off
lab-cable en7 up
"$setup" -setdhcp "Ethernet (en7)"
is "made a profile" "Ethernet (en7):en7" "$(nmcli -t -f NAME,DEVICE connection show | grep en7)"
is "no lease without a server" "DHCP Configuration " "$(mode 'Ethernet (en7)') $(info 'Ethernet (en7)' 'IP address')"
lab-dhcp on
# DHCP asks again in growing steps (RFC 2131), within 20 s.
eventually 25 "late server is found" "10.7.0.100/24" addresses en7

echo "== order"
# NetworkManager breaks the tie of two default metrics itself; the listing tells which is first.
is "the first with a router is the default route" "$(router)" "10.5.0.1 en5"
"$setup" -ordernetworkservices "Ethernet (en7)" "Show Net"
is "order told" "Ethernet (en7)|Show Net|" "$(names)"
is "default route" "10.7.0.1 en7" "$(router)"
is "default route told" "10.7.0.1 en7" "$(said_router)"
is "metrics" "100 200" "$(profile 'Ethernet (en7)' ipv4.route-metric) $(profile 'Show Net' ipv4.route-metric)"
is "addresses stay" "10.5.0.100/24 10.7.0.100/24" "$(addresses en5) $(addresses en7)"
is "incomplete order" "4" "$("$setup" -ordernetworkservices 'Show Net' >/dev/null; echo $?)"
ip link add en8 type veth peer name en9
eventually 5 "two adapters without a profile" "Ethernet (en7)|Show Net|Ethernet (en8)|Ethernet (en9)|" names
"$setup" -ordernetworkservices "Ethernet (en7)" "Show Net" "Ethernet (en9)" "Ethernet (en8)"
is "their order is kept" "Ethernet (en7)|Show Net|Ethernet (en9)|Ethernet (en8)|" "$(names)"
nmcli connection delete "Ethernet (en9)" >/dev/null
ip link delete en8
eventually 5 "they are gone" "Ethernet (en7)|Show Net|" names

echo "== routes"
"$setup" -setadditionalroutes "Show Net" 203.0.113.0 255.255.255.0 10.5.0.1 198.51.100.7 255.255.255.255 10.5.0.20
is "routes told" "203.0.113.0 255.255.255.0 10.5.0.1|198.51.100.7 255.255.255.255 10.5.0.20|" \
    "$("$setup" -getadditionalroutes 'Show Net' | tr '\n' '|')"
eventually 3 "routes in the kernel" "10.5.0.1 10.5.0.20" \
    sh -c "ip -4 route show dev en5 | awk '/203.0.113.0|198.51.100.7/ {print \$3}' | sort | tr '\n' ' ' | sed 's/ $//'"
is "behind the router" 0 "$("$root/sbin/ping" -c 1 -W 1000 -n 203.0.113.7 >/dev/null; echo $?)"
"$setup" -setadditionalroutes "Show Net"
is "routes gone" "There are no additional IPv4 routes on Show Net." "$("$setup" -getadditionalroutes 'Show Net')"
eventually 3 "routes gone from the kernel" "" sh -c "ip -4 route show dev en5 | grep 203.0.113"

echo "== temporary address"
"$root/sbin/ifconfig" en5 alias 10.99.0.5 255.255.255.0
is "alias" "10.5.0.100/24 10.99.0.5/24" "$(addresses en5)"
is "alias told" "10.5.0.100 10.99.0.5" "$(told en5)"
is "the service's own address stays its own" "10.5.0.100" "$(info 'Show Net' 'IP address')"
"$root/sbin/ifconfig" en5 -alias 10.99.0.5
is "alias gone" "10.5.0.100/24" "$(addresses en5)"
is "nothing to remove" "ifconfig: ioctl (SIOCDIFADDR): Can't assign requested address" \
    "$("$root/sbin/ifconfig" en5 -alias 10.99.0.5 2>&1)"

echo "== cable, absent adapter, ping"
"$setup" -setmanual "Ethernet (en7)" 10.7.0.9 255.255.255.0
lab-cable en7 down
eventually 2 "no link" "inactive" sh -c "$root/sbin/ifconfig en7 | sed -n 's/.*status: //p'"
"$setup" -setmanual "Ethernet (en7)" 10.7.0.11 255.255.255.0
is "saved without link" "10.7.0.11" "$(info 'Ethernet (en7)' 'IP address')"
lab-cable en7 up
eventually 10 "in use with the cable" "10.7.0.11/24" addresses en7
is "link" "active" "$("$root/sbin/ifconfig" en7 | sed -n 's/.*status: //p')"
is "absent" "ifconfig: interface en9 does not exist" "$("$root/sbin/ifconfig" en9 2>&1)"
is "reply" 0 "$("$root/sbin/ping" -c 1 -W 1000 -n 10.5.0.20 >/dev/null; echo $?)"
is "bound to the wrong cable" 2 "$("$root/sbin/ping" -c 1 -W 300 -n -b en7 10.5.0.20 >/dev/null; echo $?)"
is "unknown name" "ping: cannot resolve nowhere.invalid: Unknown host 68" \
    "$("$root/sbin/ping" -c 1 -W 300 -n nowhere.invalid 2>&1) $("$root/sbin/ping" -c 1 -W 300 nowhere.invalid 2>/dev/null; echo $?)"

echo "== two services on one adapter"
nmcli connection add type ethernet con-name Rig ifname en5 autoconnect yes ipv4.method manual ipv4.addresses 10.5.0.50/24 >/dev/null
is "setting one makes it the adapter's" "" "$("$setup" -setmanual Rig 10.5.0.51 255.255.255.0)"
is "its address" "10.5.0.51/24" "$(addresses en5)"
"$setup" -setdhcp "Show Net"
eventually 10 "and back" "10.5.0.100/24" addresses en5
nmcli connection delete Rig >/dev/null

echo "== VLAN"
is "devices" "en5 (Ethernet)|en7 (Ethernet)|" "$("$setup" -listdevicesthatsupportVLAN | tr '\n' '|')"
made=$("$setup" -createVLAN Comms en5 20)
if [ -z "$made" ]; then
    is "VLAN listed" "Comms en5 20" "$("$setup" -listVLANs | awk -F': ' '/Name|Parent|Tag/ {printf "%s ", $2}' | sed 's/ $//')"
    is "VLAN in the kernel" 0 "$(ip link show vlan0 >/dev/null 2>&1; echo $?)"
    "$setup" -deleteVLAN Comms en5 20
    eventually 3 "VLAN gone" 1 sh -c "ip link show vlan0 >/dev/null 2>&1; echo \$?"
else
    # A kernel without 802.1Q: the reason is told and nothing is left behind.
    is "an error" "** Error: " "${made:0:10}"
fi
is "no VLAN left" "There are no VLANs currently configured on this system." "$("$setup" -listVLANs)"
is "no profile left" "" "$(nmcli -t -f NAME connection show | grep Comms)"

echo "== names"
for name in "-setdhcp" 'Bob'\''s "USB" $HOME `id`' "Bühne 🎭" $'two\nlines' "*starred" "Show Net"; do
    nmcli connection add type ethernet con-name "$name" ifname en9 autoconnect no >/dev/null
done
is "names on one line each, distinct" \
    "*-setdhcp|*Bob's \"USB\" \$HOME \`id\`|*Bühne 🎭|*Show Net 2|*starred|*two lines|Ethernet (en7)|Show Net|" \
    "$("$setup" -listallnetworkservices | tail -n +2 | sed 's/^\*Show Net$/*Show Net 2/; s/^Show Net 2$/Show Net/' | LC_ALL=C sort | tr '\n' '|')"
is "a name that looks like an option" "" "$("$setup" -setmanual -setdhcp 10.0.9.9 255.255.255.0)"
is "its profile" "10.0.9.9/24" "$(nmcli -t -g ipv4.addresses connection show id -setdhcp)"
"$setup" -setmanual "two lines" 10.0.9.8 255.255.255.0
is "a name of two lines" "10.0.9.8/24" "$(nmcli -t -g ipv4.addresses connection show id $'two\nlines')"
is "a disabled service stays so" "*two lines" "$("$setup" -listallnetworkservices | grep 'two lines')"

echo "== after a restart"
before="$(names) $(info 'Ethernet (en7)' 'IP address')"
lab-nm restart
is "the same services in the same order" "$before" "$(names) $(info 'Ethernet (en7)' 'IP address')"
eventually 10 "addresses return" "10.5.0.100/24 10.7.0.11/24" sh -c "ip -o -4 address show | awk '/en/ {print \$4}' | tr '\n' ' ' | sed 's/ $//'"

echo "== rights"
as_operator() { setpriv --reuid=1999 --regid=1999 --clear-groups -- "$@"; }
is "read without rights" "Manual Configuration" "$(as_operator "$setup" -getinfo 'Ethernet (en7)' | head -1)"
is "change without rights" "** Error: Command requires admin privileges. 14" \
    "$(as_operator "$setup" -setdhcp 'Ethernet (en7)') $(as_operator "$setup" -setdhcp 'Ethernet (en7)' >/dev/null; echo $?)"
is "alias without rights" 1 "$(as_operator "$root/sbin/ifconfig" en5 alias 10.99.0.6 255.255.255.0 2>/dev/null; echo $?)"
is "nothing changed" "10.7.0.11/24" "$(addresses en7)"

echo "== cost of one -getinfo with 40 more profiles"
for number in $(seq 40); do
    nmcli connection add type ethernet con-name "Profile $number" ifname en9 autoconnect no >/dev/null
done
"$setup" -getinfo "Show Net" >/dev/null
TIMEFORMAT='-getinfo: %U s user, %S s system, %R s elapsed (20 calls)'
time for number in $(seq 20); do "$setup" -getinfo "Show Net" >/dev/null; done

echo "== without NetworkManager"
lab-nm stop
is "told at once" "** Error: NetworkManager isn't running. 1" \
    "$(timeout 5 "$setup" -listallnetworkservices) $(timeout 5 "$setup" -setdhcp 'Show Net' >/dev/null; echo $?)"
is "interfaces without it" "active" "$("$root/sbin/ifconfig" en5 | sed -n 's/.*status: //p')"

echo "$((checks - failures)) passed, $failures failed"
[ "$failures" = 0 ]
