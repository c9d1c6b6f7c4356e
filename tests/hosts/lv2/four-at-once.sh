#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# four-at-once.sh TESTS...: runs a test program with these arguments four times at once, so that its threads
# are interrupted where they seldom are. The caller limits how long it may take.
set -euo pipefail
for number in 1 2 3 4; do
    "$@" --gtest_brief=1 &
done
for job in $(jobs -p); do
    wait "$job"
done
