# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# What the verbs of ./dev need from the system, and how it gets there. Sourced by ./dev.

# The Debian packages of a group of tools.
packages_of() {
    case $1 in
        build) echo g++ cmake ninja-build ccache nlohmann-json3-dev libgtest-dev libgmock-dev ;;
        editor) echo juce-modules-source juce-tools libfontconfig-dev fonts-inter fonts-dejavu-core ;;
        display) echo xvfb xauth x11-utils xdotool imagemagick fonts-motoya-l-cedar ;;
        jack) echo jackd2 libjack-jackd2-dev liblo-dev ;;
        pipewire) echo pipewire pipewire-jack ;;
        plugins) echo lv2-dev dpf-source ;;
        hosts) echo jalv liblilv-dev lilv-utils sordi ;;
        studios) echo ardour qtractor x42-plugins ;;
        browser) echo nodejs ;;
        guide) echo lowdown groff-base ;;
        package) echo debhelper lintian ;;
        source) echo git ;;
        desktop) echo appstream desktop-file-utils ;;
        bench) echo libbenchmark-dev liblilv-dev x42-plugins ;;
        lint) echo clang-22 clang-tidy-22 clang-format-22 libclang-rt-22-dev libblocksruntime-dev ;;
        fuzz) echo clang-22 libclang-rt-22-dev ;;
        coverage) echo clang-22 libclang-rt-22-dev llvm-22 libblocksruntime-dev ;;
        mutate) echo python3 ;;
        elsewhere) echo clang-16 libclang-rt-16-dev libblocksruntime-dev libc++-16-dev libc++abi-16-dev \
            g++-12-multilib g++-aarch64-linux-gnu qemu-user-static dpf-source ;;
        fresh) echo debootstrap ;;
    esac
}

# The programs by which a system without Debian's package tools shows that it has a group.
programs_of() {
    case $1 in
        build) echo g++ cmake ninja ;;
        display) echo Xvfb xprop xdotool ;;
        jack) echo jackd ;;
        pipewire) echo pipewire pw-jack ;;
        lint) echo clang++-22 clang-tidy-22 clang-format-22 ;;
        fuzz) echo clang++-22 ;;
        coverage) echo clang++-22 llvm-cov-22 llvm-profdata-22 ;;
        mutate) echo python3 ;;
        elsewhere) echo clang++-16 g++-12 aarch64-linux-gnu-g++ qemu-aarch64-static ;;
        fresh) echo debootstrap ;;
    esac
}

# need GROUP...: installs what is missing of these groups. Where it cannot, it says what to install, and goes
# on if at least the programs are there.
need() {
    local group packages=() programs=() missing
    for group in "$@"; do
        read -ra packages <<<"${packages[*]} $(packages_of "$group")"
        read -ra programs <<<"${programs[*]} $(programs_of "$group")"
    done
    missing=$(missing_packages "${packages[@]}")
    if [[ -z $missing ]]; then
        return
    fi
    if can_install; then
        # shellcheck disable=SC2086 # one word a package
        install_packages $missing
    else
        do_without "$missing" "${programs[@]}"
    fi
}

has_debian_tools() {
    command -v apt-get >/dev/null && command -v dpkg-query >/dev/null
}

can_install() {
    has_debian_tools && { ((EUID == 0)) || command -v sudo >/dev/null; }
}

# Those of the named packages that are not installed; all of them where nobody can tell.
missing_packages() {
    local package missing=()
    for package in "$@"; do
        if ! has_debian_tools || [[ $(package_status "$package") != installed ]]; then
            missing+=("$package")
        fi
    done
    echo "${missing[*]}"
}

package_status() {
    dpkg-query --show --showformat '${db:Status-Status}' "$1" 2>/dev/null || true
}

# do_without PACKAGES PROGRAM...: for a system on which nothing can be installed from here.
do_without() {
    local wanted=$1 program absent=()
    shift
    for program in "$@"; do
        command -v "$program" >/dev/null || absent+=("$program")
    done
    if has_debian_tools; then
        say "Missing, and neither root nor sudo to install it: $wanted"
        say "As root: apt-get install --no-install-recommends $wanted"
    else
        say "This needs what your system calls these Debian packages: $wanted"
    fi
    if ((${#absent[@]} > 0)); then
        say "Not found: ${absent[*]}"
        exit 69
    fi
}

install_packages() {
    say "Installing $*"
    if ! all_known "$@"; then
        as_root apt-get update
        all_known "$@" || refuse_unknown "$@"
    fi
    if ! install_known "$@" 2>/dev/null; then
        as_root apt-get update
        install_known "$@"
    fi
}

install_known() {
    as_root apt-get --yes --no-install-recommends install "$@"
}

# Runs one of the package tools, which are silent unless they fail.
as_root() {
    local output become=()
    ((EUID == 0)) || become=(sudo)
    if ! output=$("${become[@]}" env DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 "$@" \
        --quiet -o DPkg::Lock::Timeout=120 -o Dpkg::Use-Pty=0 2>&1); then
        printf '%s\n' "$output" | tail -n 20 >&2
        return 1
    fi
}

all_known() {
    local package
    for package in "$@"; do
        is_known "$package" || return 1
    done
}

is_known() {
    [[ $(LC_ALL=C apt-cache policy "$1") =~ Candidate:\ [^\(] ]]
}

refuse_unknown() {
    local package unknown=()
    for package in "$@"; do
        is_known "$package" || unknown+=("$package")
    done
    say "The package sources of this system do not offer: ${unknown[*]}"
    if [[ ${unknown[*]} == *clang* ]]; then
        say "Debian 12 has Clang 22 among its security updates. Add them, as root, and try again:"
        say "    echo 'deb http://deb.debian.org/debian-security bookworm-security main' \\"
        say "        > /etc/apt/sources.list.d/security.list"
    fi
    exit 69
}

# A line for every package that the build may find, with its version: when this changes, CMake looks again.
# Where nobody can tell, it always does.
installed_versions() {
    has_debian_tools || { date +%s.%N; return; }
    local group
    for group in build editor display jack pipewire plugins hosts studios browser guide desktop \
        bench lint; do
        # shellcheck disable=SC2046 # one word a package
        dpkg-query --show $(packages_of $group) 2>/dev/null || true
    done
}
