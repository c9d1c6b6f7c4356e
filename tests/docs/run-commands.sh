#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# run-commands.sh PROGRAMS PAGE.md...: runs every `sh` block of these pages as a reader would, one after the
# other: what one block has made is there for the next. PROGRAMS is the folder with the built programs. Blocks
# of another language are for reading only.
#
# A README.md is read in a fresh clone, where nothing is built or installed: its commands find the presets and
# ./dev, and what ./dev has installed. The other pages are read where the programs are installed, in a folder
# that has the files that they speak of.
#
# Three commands are stood in for, because they build, open a window or need a sound server: ./dev must know
# the verb and find the files, midi-quillo-jack must know every option, by what they say of themselves, and
# pw-jack, which comes with a sound server, runs the command that it is given.
set -euo pipefail

programs=$(realpath "$1")
shift
source=$(realpath "$(dirname "$0")/../..")
desk=$(mktemp -d)
trap 'rm -rf "$desk"' EXIT

lay_out_clone() {
    mkdir "$desk/clone" "$desk/home" "$desk/stand-ins" "$desk/system"
    cp -r "$source/presets" "$desk/clone/presets"
    stand_in_for_jack
    stand_in_for_dev
}

lay_out_installed() {
    mkdir "$desk/bin" "$desk/installed"
    cp -r "$source/presets" "$desk/clone/dev" "$desk/installed"
    cp "$source/presets/demo.mid" "$desk/installed/song.mid"
    cp "$source/presets/demo.json" "$desk/installed/mypreset.json"
    ln -s "$programs/midi-quillo" "$desk/stand-ins/midi-quillo-jack" "$desk/bin"
}

stand_in_for_dev() {
    cat >"$desk/clone/dev" <<END
#!/usr/bin/env bash
fail() { echo "./dev: \$*" >&2; exit 64; }
[[ \$# == 0 ]] || "$source/dev" help | grep -q "^  \$1\\b" || fail "there is no verb \$1"
case \${1-} in
    run) for file in "\${@:2}"; do [[ \$file == --* || -r \$file ]] || fail "cannot read \$file"; done ;;
    install) ln -sf "$programs/midi-quillo" "$desk/stand-ins/midi-quillo-jack" "$desk/home" ;;
    jack) "$desk/stand-ins/midi-quillo-jack" "\${@:2}" ;;
esac
END
    chmod +x "$desk/clone/dev"
}

stand_in_for_jack() {
    cat >"$desk/stand-ins/midi-quillo-jack" <<END
#!/usr/bin/env bash
for word in "\$@"; do
    [[ \$word != --* ]] || "$programs/midi-quillo-jack" --help | grep -q -e "\$word" ||
        { echo "midi-quillo-jack has no option \$word" >&2; exit 64; }
done
END
    printf '#!/bin/sh\nexec "$@"\n' >"$desk/system/pw-jack"
    chmod +x "$desk/stand-ins/midi-quillo-jack" "$desk/system/pw-jack"
}

# block PAGE N: the page's Nth `sh` block; nothing when it has fewer.
block() {
    awk -v wanted="$2" '
        /^```/ { if (inside) { inside = 0 } else if ($0 == "```sh") { inside = 1; ++n; next } }
        inside && n == wanted' "$1"
}

# try PAGE N COMMANDS: runs them; on failure shows them and what they said.
try() {
    local folder=$desk/installed path=$desk/bin
    if [[ $(basename "$1") == README.md ]]; then
        folder=$desk/clone path=$desk/home
    fi
    if (cd "$folder" && PATH=$path:$desk/system:$PATH bash -euo pipefail -c "$3") \
        >"$desk/output" 2>&1 </dev/null; then
        return
    fi
    printf '%s, block %d:\n%s\n--- said\n' "$1" "$2" "$3"
    cat "$desk/output"
    return 1
}

lay_out_clone
lay_out_installed
failed=0
ran=0
for page in "$@"; do
    page=$(realpath "$page")
    for ((n = 1; ; ++n)); do
        commands=$(block "$page" "$n")
        [[ -n $commands ]] || break
        ran=$((ran + 1))
        try "$page" "$n" "$commands" || failed=$((failed + 1))
    done
done
echo "$ran blocks, $failed failed"
((ran > 0 && failed == 0))
