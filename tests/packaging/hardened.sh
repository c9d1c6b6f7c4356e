#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# hardened.sh BINARY...: what the ELF headers of programs and plug-ins say of their hardening.
set -euo pipefail
export LC_ALL=C
status=0

# must_have PATTERN WHAT: a line of the headers of $binary.
must_have() {
    if ! grep -qE -e "$1" <<<"$headers"; then
        echo "$binary: $2"
        status=1
    fi
}

for binary in "$@"; do
    headers=$(readelf --wide --file-header --segments --dynamic --dyn-syms "$binary")
    must_have 'Type: +DYN ' "is not position-independent"
    must_have '^ +GNU_STACK .* RW +0x' "has a stack that can be executed"
    must_have '^ +GNU_RELRO ' "does not protect its relocations"
    must_have '\(FLAGS_1\) .*\bNOW\b' "leaves its relocations open, to bind functions when they are called"
    must_have ' UND __stack_chk_fail\b' "does not look after its stack"
    must_have ' UND __[a-z]+_chk\b' "copies without regard to the sizes of buffers"
done
exit "$status"
