#!/bin/sh
# Runs a command on a private session bus with an unlocked, empty keyring. Exits 77 where that can't be had.
for tool in dbus-run-session gnome-keyring-daemon; do
    command -v "$tool" >/dev/null || { echo "SKIPPED: no $tool on this computer; the password store is untested."; exit 77; }
done
if [ "$WENDREL_PRIVATE_BUS" != yes ]; then
    folder=$(mktemp -d) || exit 1
    trap 'rm -rf "$folder"' EXIT
    mkdir -m 700 "$folder/run"
    env -u GNOME_KEYRING_CONTROL -u DISPLAY WENDREL_PRIVATE_BUS=yes HOME="$folder" XDG_RUNTIME_DIR="$folder/run" \
        XDG_DATA_HOME="$folder/data" XDG_CONFIG_HOME="$folder/config" XDG_CACHE_HOME="$folder/cache" \
        dbus-run-session -- "$0" "$@"
    exit $?
fi
printf 'keyring' | gnome-keyring-daemon --foreground --unlock --components=secrets >"$HOME/daemon.log" 2>&1 &
daemon=$!
trap 'kill $daemon; wait $daemon' EXIT
tries=0
until dbus-send --session --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.NameHasOwner \
    string:org.freedesktop.secrets 2>/dev/null | grep -q 'boolean true'; do
    tries=$((tries + 1))
    if [ "$tries" -gt 100 ] || ! kill -0 "$daemon" 2>/dev/null; then
        cat "$HOME/daemon.log"
        echo "SKIPPED: the keyring daemon doesn't run here; the password store is untested."
        exit 77
    fi
    sleep 0.1
done
"$@"
