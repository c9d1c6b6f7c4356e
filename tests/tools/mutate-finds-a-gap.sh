#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# mutate-finds-a-gap.sh MUTATE: whether the program that breaks sources names what the tests of a small
# project let pass, gives the reason of what nobody can see, and leaves the project alone.
set -euo pipefail

mutate=$1
project=$(mktemp -d)
trap 'rm -rf "$project"' EXIT
cd "$project"
mkdir code tests tools

cat >code/Velocity.cpp <<'END_OF_FILE'
#include "Velocity.hpp"

constexpr int unused = 5;

int louder(int velocity) {
    // A comment with 1 < 2.
    if (velocity <= least) {
        return least;
    }
    note("louder 1 < 2");
    clear();
    return velocity < 127 ? velocity + 1 : 127;
}
END_OF_FILE
cat >code/Velocity.hpp <<'END_OF_FILE'
constexpr int least = 0;

int louder(int velocity);
void note(const char* text);
void clear();
END_OF_FILE
cat >tests/velocity-tests.cpp <<'END_OF_FILE'
#include "../code/Velocity.hpp"

static int notes = 0;

void note(const char*) {
    ++notes;
}

void clear() {
    notes *= 2;
}

int main() {
    const bool quiet = louder(-5) == 0 && louder(0) == 0;
    const bool loud = louder(1) == 2 && louder(100) == 101;
    return quiet && loud && notes == 6 ? 0 : 1;
}
END_OF_FILE
cat >CMakeLists.txt <<'END_OF_FILE'
cmake_minimum_required(VERSION 3.25)
project(Small LANGUAGES CXX)
add_executable(velocity-tests code/Velocity.cpp tests/velocity-tests.cpp)
set_target_properties(velocity-tests PROPERTIES RUNTIME_OUTPUT_DIRECTORY tests)
END_OF_FILE
cat >CMakePresets.json <<'END_OF_FILE'
{
  "version": 6,
  "configurePresets": [
    {
      "name": "mutate",
      "generator": "Ninja",
      "binaryDir": "${sourceDir}/build-mutate",
      "cacheVariables": { "CMAKE_CXX_FLAGS": "-O1" }
    }
  ]
}
END_OF_FILE
printf '# folder program\ncode velocity-tests\n' >tools/mutate-folders.txt
printf '# reasons\nVelocity.cpp\tvelocity < 127\tvelocity <= 127\tNobody plays so loudly.\n' \
    >tools/mutate-reasons.txt
before=$(cat code/*)

cat >expected <<'END_OF_FILE'

code/Velocity.cpp:12
-    return velocity < 127 ? velocity + 1 : 127;
+    return velocity <= 127 ? velocity + 1 : 127;
    Nobody plays so loudly.

code/Velocity.cpp:12
-    return velocity < 127 ? velocity + 1 : 127;
+    return velocity < 128 ? velocity + 1 : 127;

code/Velocity.cpp:12
-    return velocity < 127 ? velocity + 1 : 127;
+    return velocity < 127 ? velocity + 1 : 128;

folder                                      made  caught  nothing  explained  survived  score
code                                          14      10        1          1         2   83.3
END_OF_FILE
status=0
QUILLO_JOBS=1 python3 "$mutate" >found || status=$?
diff expected found
if ((status != 1)); then
    echo "with survivors that nobody has explained the status is $status"
    exit 1
fi
if [[ $(cat code/*) != "$before" ]]; then
    echo "the project's own files were changed"
    exit 1
fi
