# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# The checks of `./dev lint`. Sourced by ./dev.

# lint [quick]: every check, or those that build nothing.
lint() {
    need build editor jack plugins hosts lint
    local failed=()
    check "every source names its licence" licences_named || true
    check "format" format_kept || true
    check "lines of at most 110 columns" lines_fit || true
    check "real-time exemptions" exemptions_stated || true
    check "includes point down" includes_point_down || true
    check "the macOS shell, against headers of our own" mac_shell_compiles || true
    check "broken macOS shells are refused" broken_shells_refused || true
    check "the project for macOS, as a Mac's CMake reads it" mac_project_configures || true
    if [[ ${1-} != quick ]] && check "warnings and function effects (Clang 22)" clang_builds; then
        check "broken real-time promises are refused" broken_promises_refused || true
        check "the macOS shell, run against doubles of the platform" mac_shell_runs || true
        check "the real-time contract at run time (RealtimeSanitizer)" realtime_watched || true
        check "every header alone" headers_compile_alone || true
        check "clang-tidy" sources_tidy || true
    fi
    if ((${#failed[@]} > 0)); then
        printf 'lint: failed: %s\n' "${failed[@]}"
        return 1
    fi
    echo "lint: clean"
}

# check TITLE FUNCTION: runs one check, and remembers its failure for the verdict.
check() {
    say "$1"
    if ! "$2"; then
        failed+=("$1")
        return 1
    fi
}

# our_files PATTERN...: every file of ours whose name matches, one a line.
our_files() {
    local pattern names=()
    for pattern in "$@"; do
        names+=(-o -name "$pattern")
    done
    find . \( -path './build' -o -path './build-*' -o -path './.git' -o -path './.cache' \) -prune \
        -o -type f \( "${names[@]:1}" \) -print | sed 's|^\./||' | LC_ALL=C sort
}

cpp_files() {
    our_files '*.cpp' '*.hpp' '*.c' '*.h' '*.mm'
}

licences_named() {
    local files missing
    mapfile -t files < <(
        cpp_files
        our_files CMakeLists.txt '*.cmake' '*.py' '*.sh' dev run
    )
    if missing=$(grep -L 'SPDX-License-Identifier: GPL-3.0-or-later' "${files[@]}") && [[ -n $missing ]]; then
        echo "No line 'SPDX-License-Identifier: GPL-3.0-or-later' in:"
        printf '%s\n' "$missing"
        return 1
    fi
}

format_kept() {
    local files
    mapfile -t files < <(cpp_files)
    clang-format-22 --dry-run --Werror "${files[@]}" || {
        echo "./dev format puts this right."
        return 1
    }
}

# The formatter leaves comments and texts as long as they are, and knows C++ alone.
lines_fit() {
    local files long
    mapfile -t files < <(
        cpp_files
        our_files CMakeLists.txt '*.cmake' '*.py' '*.sh' '*.awk' dev run
    )
    if long=$(LC_ALL=C.UTF-8 grep -HnE '^.{111}' "${files[@]}") && [[ -n $long ]]; then
        printf '%s\n' "$long"
        return 1
    fi
}

apply_format() {
    local files
    mapfile -t files < <(cpp_files)
    clang-format-22 -i "${files[@]}"
}

# Names each place that leaves the real-time contract, with its reason, and refuses one without a reason or
# one that goes round the macro.
exemptions_stated() {
    local files outside status=0
    mapfile -t files < <(cpp_files)
    awk -f tools/exemptions.awk "${files[@]}" || status=1
    outside=$(grep -n 'diagnostic ignored.*-Wfunction-effects' "${files[@]}" |
        grep -v 'platform/RealTime.hpp' || true)
    if [[ -n $outside ]]; then
        printf 'Silenced without QUILLO_REALTIME_EXEMPT:\n%s\n' "$outside"
        status=1
    fi
    return "$status"
}

# Our folders, from the bottom up. The formats' own, `hosts/*`, stand on top of them, side by side.
rooms='platform midi rules persistence engine log words analysis otherformats session
    audiounit/platform audiounit editor midifile presets offline scriptedhost commandline window
    programs/editor programs'

includes_point_down() {
    local files
    mapfile -t files < <(cpp_files)
    awk -v rooms="${rooms//$'\n'/ }" -f tools/includes.awk "${files[@]}"
}

clang_builds() {
    build_tree clang
}

# The function-effect check is worth nothing where it lets everything through: these sources must pass without
# it and fail with it.
broken_promises_refused() {
    local source status=0
    for source in tests/realtime/must-not-compile/*.cpp; do
        if ! promise_compiles "$source" -w; then
            status=1
        elif promise_compiles "$source" -Werror=function-effects 2>/dev/null; then
            echo "$source breaks the real-time contract, and Clang does not mind"
            status=1
        fi
    done
    return "$status"
}

promise_compiles() {
    clang++-22 -std=c++20 -fsyntax-only -I. -Wno-exceptions "${@:2}" "$1"
}

# Nothing here runs macOS: its compiler's place is taken by Clang, that of its headers by ours, which hold
# what the shell uses of them.
mac_shell_compiles() {
    our_files '*.mm' | grep '^hosts/auv3/' | while read -r source; do
        mac_compiles "$source" || exit 1
    done
}

# These sources must pass as they should be and fail as they are.
broken_shells_refused() {
    local source status=0
    for source in tests/hosts/auv3/must-not-compile/*.mm; do
        if ! mac_compiles "$source" -DRIGHT; then
            status=1
        elif mac_compiles "$source" 2>/dev/null; then
            echo "$source is wrong, and Clang does not mind"
            status=1
        fi
    done
    return "$status"
}

mac_compiles() {
    clang++-22 -x objective-c++ -std=c++20 -fsyntax-only -fobjc-runtime=macosx-12 -fobjc-arc -fblocks \
        -I. -IMIDI_Quillo_Extension_macOS -Itests/hosts/auv3/stubs -Werror -Wall -Wextra -Wpedantic -Wshadow \
        -Wconversion -Wsign-conversion -Woverriding-method-mismatch -Wfunction-effects "${@:2}" "$1"
}

mac_project_configures() {
    local tree status=0 strangers
    tree=$(mktemp -d)
    cmake -S . -B "$tree" -G Ninja --toolchain tests/hosts/auv3/TakenForAMac.cmake --log-level=WARNING \
        -DCMAKE_OSX_DEPLOYMENT_TARGET=12.0 -DQUILLO_BUILD_TESTS=OFF >/dev/null || status=1
    if ((status == 0)) && ! ninja -C "$tree" -n MIDIQuilloApp MIDIQuilloExtension >/dev/null; then
        echo "the app or its extension is not in the project"
        status=1
    fi
    if strangers=$(ninja -C "$tree" -t targets all |
        grep -E '^(midi-quillo-|quillo-)?(jack|lv2|clap|vst3|window|shots|desk)'); then
        printf 'The project for macOS has what is for Linux:\n%s\n' "$strangers"
        status=1
    fi
    defaults_documented "$tree/CMakeCache.txt" || status=1
    rm -rf "$tree"
    return "$status"
}

# defaults_documented CACHE: whether the page about macOS names each variable's default as it is.
defaults_documented() {
    local name default status=0
    while IFS='|' read -r _ name default _; do
        name=${name//[\` ]/}
        default=$(sed 's/^ *`\(.*\)` *$/\1/' <<<"$default")
        if ! grep -qx "$name:[A-Z]*=$default" "$1"; then
            echo "docs/macos.md says that $name is \"$default\""
            status=1
        fi
    done < <(grep '^| `QUILLO_' docs/macos.md)
    return "$status"
}

mac_shell_runs() {
    build_tree clang auv3-shell-tests && build-clang/tests/hosts/auv3/auv3-shell-tests --gtest_brief=1
}

realtime_watched() {
    test_tree rtsan
}

headers_compile_alone() {
    build_tree clang all_verify_interface_header_sets && no_header_left_out
}

# A header that no library declares would silently escape the check above.
no_header_left_out() {
    local compiled header status=0
    compiled=$(find build-clang -path '*_verify_interface_header_sets/*' -name '*.cxx')
    while read -r header; do
        if [[ $compiled != *"/${header##*/}.cxx"* ]]; then
            echo "$header is in no library's HEADERS"
            status=1
        fi
    done < <(our_files '*.hpp' | grep -vE '^(tests|benchmarks|fuzz)/')
    return "$status"
}

sources_tidy() {
    local sources
    mapfile -t sources < <(
        sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' build-clang/compile_commands.json |
            grep "^$PWD/" | grep -v "^$PWD/build" | LC_ALL=C sort -u
    )
    printf '%s\0' "${sources[@]}" | xargs -0 -P "$QUILLO_JOBS" -n 1 tools/tidy-file.sh || return 1
    echo "${#sources[@]} sources are tidy"
}
