# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# `./dev package`, `./dev package source` and `./dev guide`: what goes to people who have no compiler, or one
# of their own. What is packed twice of one commit is the same twice, bit for bit. Sourced by ./dev.

# The text of the licence, which goes into everything that is packed.
licence_text=/usr/share/common-licenses/GPL-3

make_guide() {
    need build editor guide
    build_tree release quillo-guide
    say "The guide: $PWD/build/guide/index.html"
}

# of_clone COMMAND...: git, in a clone that may be another user's than root's.
of_clone() {
    git -c safe.directory="$PWD" "$@"
}

project_version() {
    sed -n 's/^project(MIDIQuillo VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt
}

# The time of the commit. The files of a source archive bear it.
commit_time() {
    of_clone log -1 --format=%ct 2>/dev/null || stat --format=%Y CHANGELOG.md
}

# Leaves Debian packages and an archive in build/packages.
make_packages() {
    need build editor jack plugins guide package
    build_tree release quillo-product || return
    rm -rf build/packages
    mkdir -p build/packages/work
    SOURCE_DATE_EPOCH=$(commit_time)
    export SOURCE_DATE_EPOCH
    say "packing"
    if ! keep_manifest make_files >build/packages.log 2>&1; then
        tail -n 20 build/packages.log
        return 1
    fi
    rm -rf build/packages/work
    say "checking the packages (lintian)"
    lintian --allow-root --pedantic --fail-on error,warning,pedantic build/packages/*.deb || return
    printf '%s\n' "$PWD"/build/packages/*
}

# keep_manifest COMMAND...: does what installs elsewhere, and leaves CMake's list of what is installed for
# good, which may be root's, as it was.
keep_manifest() {
    local manifest=build/install_manifest.txt kept=build/install_manifest.kept status=0
    # One that is kept already was left by a run that was interrupted.
    [[ ! -e $manifest || -e $kept ]] || mv "$manifest" "$kept"
    "$@" || status=1
    rm -f "$manifest"
    [[ ! -e $kept ]] || mv "$kept" "$manifest"
    return "$status"
}

make_files() {
    make_debian_packages && make_archive
}

make_debian_packages() {
    local debian=build/packages/work/debian
    cp -r build/package/debian build/packages/work
    sed -i "s/ DATE$/ $(date --utc --date "@$SOURCE_DATE_EPOCH" --rfc-email)/" "$debian/changelog"
    {
        licence_of nlohmann-json3-dev BSD-3-clause
        licence_of nlohmann-json3-dev Expat
        licence_of lv2-dev ISC
    } >>"$debian/copyright" || return
    (cd "$debian/.." && DEB_RULES_REQUIRES_ROOT=no DEB_BUILD_OPTIONS=noautodbgsym debian/rules binary)
}

# licence_of PACKAGE LICENCE: its text, as this Debian package has it.
licence_of() {
    awk -v RS= -v first="License: $2" '
        index($0, first "\n") == 1 { print "\n" $0; found = 1 }
        END { exit !found }' "/usr/share/doc/$1/copyright"
}

make_archive() {
    local name tree documents
    name=midi-quillo-$(project_version)-linux-$(uname -m)
    tree=build/packages/work/$name
    documents=$tree/share/doc/midi-quillo
    cmake --install build --prefix "$tree" --strip || return
    install -m 644 "$licence_text" build/packages/work/debian/copyright "$documents" || return
    tar --create --sort=name --owner=0 --group=0 --numeric-owner --mode=u=rwX,go=rX \
        --mtime="@$SOURCE_DATE_EPOCH" \
        --directory build/packages/work "$name" | gzip --no-name >"build/packages/$name.tar.gz"
}

# Leaves in build/source an archive of the commit, which builds without a network where its libraries are
# installed, and the recipes of other systems with its checksum.
make_source() {
    need source
    local name sum recipe
    name=midi-quillo-$(project_version)
    rm -rf build/source
    mkdir -p build/source
    of_clone -c tar.umask=0022 archive --format=tar --prefix="$name/" --add-file="$licence_text" HEAD |
        gzip --no-name >"build/source/$name.tar.gz"
    sum=$(sha256sum "build/source/$name.tar.gz")
    for recipe in packaging/recipes/*.in; do
        sed -e "s/@VERSION@/$(project_version)/" -e "s/@SHA256@/${sum%% *}/" "$recipe" \
            >"build/source/$(basename "${recipe%.in}")"
    done
    [[ -z $(of_clone status --porcelain) ]] || say "what is not committed is not in it"
    printf '%s\n' "$PWD"/build/source/*
}

# prove_package: installs the packages in a bare Debian 12, uses them, upgrades and removes them. Called in a
# root of its own by ./dev fresh.
prove_package() {
    local root=$1
    make_packages || return
    mkdir -p "$root/root/packages"
    cp build/packages/*.deb build/packages/*.tar.gz tools/prove-package.sh "$root/root/packages/"
    make_newer_packages "$root/root/packages" || return
    chroot "$root" /usr/bin/env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin TERM=dumb \
        bash /root/packages/prove-package.sh </dev/null
}

# make_newer_packages FOLDER: the same packages under the next version number, in FOLDER/newer.
make_newer_packages() {
    local package unpacked=$fresh_folder/newer
    mkdir "$1/newer" || return
    for package in "$1"/*.deb; do
        dpkg-deb --raw-extract "$package" "$unpacked" &&
            sed -i 's/^Version: .*/&.1/' "$unpacked/DEBIAN/control" &&
            dpkg-deb --root-owner-group --build "$unpacked" "$1/newer" >"$fresh_folder/newer.log" || return
        rm -rf "$unpacked"
    done
}
