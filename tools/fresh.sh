# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# `./dev fresh`: does the repository alone bring a bare Debian 12 to a working program? Sourced by ./dev.

prove_fresh() {
    if ((EUID != 0)); then
        say "./dev fresh makes a root of its own: run it as root"
        exit 77
    fi
    need fresh
    fresh_folder=$(mktemp -d /var/tmp/midi-quillo-fresh.XXXXXX)
    trap remove_fresh EXIT
    trap 'exit 130' INT TERM
    make_bare_debian "$fresh_folder/bare"

    local verb status=0 verdicts=()
    for verb in run test; do
        prove_verb "$verb" || status=1
    done
    echo
    echo "Bare Debian $(<"$fresh_folder/bare/etc/debian_version"), commit $(git rev-parse --short HEAD):"
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

# Each verb has a root of its own, so that none lives on what another has installed.
prove_verb() {
    local verb=$1 root=$fresh_folder/$1 begin=$SECONDS result=passed
    say "./dev $verb on a bare Debian 12"
    cp -a "$fresh_folder/bare" "$root"
    mkdir "$root/root/midi-quillo"
    git archive HEAD | tar -x -C "$root/root/midi-quillo"
    mount -t proc proc "$root/proc"
    chroot "$root" /usr/bin/env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin TERM=dumb \
        sh -c "cd /root/midi-quillo && ./dev $verb" </dev/null || result=FAILED
    if [[ $verb == run && ! -s $root/root/midi-quillo/build/demo-out.mid ]]; then
        result=FAILED
    fi
    umount "$root/proc"
    rm -rf --one-file-system "$root"
    verdicts+=("./dev $verb $result after $((SECONDS - begin)) s")
    [[ $result == passed ]]
}

remove_fresh() {
    local proc
    for proc in "$fresh_folder"/*/proc; do
        if mountpoint -q "$proc"; then
            umount --lazy "$proc"
        fi
    done
    rm -rf --one-file-system "$fresh_folder"
}
