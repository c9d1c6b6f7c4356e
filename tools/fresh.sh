# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# `./dev fresh`: does the repository alone bring a bare Debian 12 to a working program, and does its package
# serve a newcomer there? Sourced by ./dev.

# prove_fresh [PROOF...]: run, test or package; all of them by default.
prove_fresh() {
    if ((EUID != 0)); then
        say "./dev fresh makes a root of its own: run it as root"
        exit 77
    fi
    need fresh source
    local commit
    commit=$(of_clone rev-parse --short HEAD) || return
    fresh_folder=$(mktemp -d /var/tmp/midi-quillo-fresh.XXXXXX)
    trap remove_fresh EXIT
    trap 'exit 130' INT TERM
    make_bare_debian "$fresh_folder/bare"

    local proof status=0 verdicts=()
    (($# > 0)) || set -- run test package
    for proof in "$@"; do
        prove_in_root "$proof" || status=1
    done
    echo
    echo "Bare Debian $(<"$fresh_folder/bare/etc/debian_version"), commit $commit:"
    printf '    %s\n' "${verdicts[@]}"
    return "$status"
}

make_bare_debian() {
    local mirror
    mirror=$(debian_mirror)
    say "Making a bare Debian 12 from $mirror (a minute or two)"
    if ! debootstrap --variant=minbase bookworm "$1" "$mirror" >"$fresh_folder/debootstrap.log" 2>&1; then
        tail -n 20 "$fresh_folder/debootstrap.log"
        exit 69
    fi
    cp /etc/resolv.conf /etc/hosts "$1/etc/"
    apt-config dump | grep -iE '^Acquire::https?::Proxy' >"$1/etc/apt/apt.conf.d/90host-proxy" || true
}

# Where this system itself gets Debian 12 from.
debian_mirror() {
    local mirror
    # shellcheck disable=SC2016 # apt-get fills these in
    mirror=$(apt-get indextargets --format '$(CODENAME) $(REPO_URI)' 2>/dev/null |
        sed -n 's/^bookworm \(http.*\)/\1/p' | head -n 1)
    echo "${mirror:-http://deb.debian.org/debian/}"
}

# Each proof has a root of its own, so that none lives on what another has installed.
prove_in_root() {
    local proof=$1 root=$fresh_folder/$1 begin=$SECONDS result=passed
    say "$proof on a bare Debian 12"
    cp -a "$fresh_folder/bare" "$root"
    mount_for "$root"
    if [[ $proof == package ]]; then
        prove_package "$root" || result=FAILED
    else
        prove_verb "$proof" "$root" || result=FAILED
    fi
    unmount_from "$root"
    rm -rf --one-file-system "$root"
    verdicts+=("$proof $result after $((SECONDS - begin)) s")
    [[ $result == passed ]]
}

# What programs expect of a running system: processes, and memory that they share, as sound servers do.
mount_for() {
    mkdir -p "$1/dev/shm"
    mount -t proc proc "$1/proc"
    mount -t tmpfs tmpfs "$1/dev/shm"
}

unmount_from() {
    local place
    for place in "$1/dev/shm" "$1/proc"; do
        if mountpoint -q "$place"; then
            umount --lazy "$place"
        fi
    done
}

# prove_verb VERB ROOT: ./dev VERB with nothing but this repository.
prove_verb() {
    mkdir "$2/root/midi-quillo"
    of_clone archive HEAD | tar -x -C "$2/root/midi-quillo" || return
    chroot "$2" /usr/bin/env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin TERM=dumb \
        sh -c "cd /root/midi-quillo && ./dev $1" </dev/null || return
    [[ $1 != run || -s $2/root/midi-quillo/build/demo-out.mid ]]
}

remove_fresh() {
    local root
    for root in "$fresh_folder"/*; do
        unmount_from "$root"
    done
    rm -rf --one-file-system "$fresh_folder"
}
