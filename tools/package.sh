# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# `./dev package` and `./dev guide`: what goes to people who have no compiler. Sourced by ./dev.

make_guide() {
    need build editor guide
    build_tree release quillo-guide
    say "The guide: $PWD/build/guide/index.html"
}

# Leaves a Debian package and an archive in build/packages.
make_packages() {
    need build editor jack plugins guide package
    build_tree release quillo-product
    rm -rf build/packages
    say "packing"
    (cd build && cpack --config CPackConfig.cmake >packages.log) || {
        tail -n 20 build/packages.log
        return 1
    }
    rm -rf build/packages/_CPack_Packages
    printf '%s\n' "$PWD"/build/packages/*
}

# prove_package: installs the package in a bare Debian 12, uses it, upgrades it and removes it. Called in a root of
# its own by ./dev fresh.
prove_package() {
    local root=$1
    make_packages || return
    mkdir -p "$root/root/packages"
    cp build/packages/*.deb build/packages/*.tar.gz tools/prove-package.sh "$root/root/packages/"
    make_newer_package "$root/root/packages"
    chroot "$root" /usr/bin/env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin TERM=dumb \
        bash /root/packages/prove-package.sh </dev/null
}

# make_newer_package FOLDER: the same package under the next version number.
make_newer_package() {
    local unpacked=$fresh_folder/newer
    dpkg-deb --raw-extract "$1"/midi-quillo_*.deb "$unpacked"
    sed -i 's/^Version: .*/&.1/' "$unpacked/DEBIAN/control"
    dpkg-deb --root-owner-group --build "$unpacked" "$1/newer.deb" >"$fresh_folder/newer.log"
    rm -rf "$unpacked"
}
