# SPDX-License-Identifier: GPL-3.0-or-later
# A page from what llvm-cov exports as lcov: the branches of each folder, and each line with one that no test
# takes, with the reason that a file gives before it: file, a piece of the line, reason, with tabs between.
# Fails where there is no reason. `here` is the repository's folder.
#
# The way past all cases of a switch is no branch here: a switch without a default has them all, which the
# compiler checks.
FILENAME ~ /\.txt$/ {
    if (!/^#/ && NF > 0) {
        split($0, given, "\t")
        ++reasons
        fileOf[reasons] = given[1]
        pieceOf[reasons] = given[2]
        reasonOf[reasons] = given[3]
    }
    next
}

/^SF:/ {
    path = substr($0, 4)
    if (index(path, here) == 1) {
        path = substr(path, length(here) + 1)
    }
    line = 0
    while ((getline text < path) > 0) {
        source[path, ++line] = text
    }
    close(path)
    folder = path
    sub(/\/[^\/]*$/, "", folder)
    if (!(folder in all)) {
        folders[++count] = folder
        all[folder] = 0
    }
}

# Line, place in the line, which way (even: true), how often.
/^BRDA:/ {
    split(substr($0, 6), branch, ",")
    isTaken = branch[4] != "-" && branch[4] > 0
    text = source[path, branch[1]]
    if (!isTaken && text ~ /^ *switch \(/) {
        next
    }
    ++all[folder]
    taken[folder] += isTaken
    if (!isTaken) {
        sub(/^ */, "", text)
        missing[++missed] = path ":" branch[1] ": never " (branch[3] % 2 == 0 ? "true" : "false") ": " text
        why[missed] = reasonFor(path, text)
    }
}

function reasonFor(path, text, i) {
    for (i = 1; i <= reasons; ++i) {
        if (path ~ ("/" fileOf[i] "$") && index(text, pieceOf[i]) > 0) {
            return reasonOf[i]
        }
    }
    return ""
}

END {
    printf "%-46s %8s %8s %8s\n", "folder", "branches", "taken", "percent"
    for (i = 1; i <= count; ++i) {
        folder = folders[i]
        printf "%-46s %8d %8d %8.1f\n", folder, all[folder], taken[folder],
            all[folder] ? 100 * taken[folder] / all[folder] : 100
    }
    for (i = 1; i <= missed; ++i) {
        print "\n" missing[i] "\n    " (why[i] != "" ? why[i] : "NO REASON GIVEN: write a test or the reason")
        unexplained += why[i] == ""
    }
    exit unexplained > 0
}
