# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# `./dev mutate`: which changes of the sources their tests would let pass. Sourced by ./dev.

# mutate [FOLDER | FILE] [--seed N] [--most N] [--list]
mutate() {
    need build jack pipewire plugins hosts mutate
    keep_addresses_plain mutate "$@"
    python3 tools/mutate.py "$@"
}
