#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Breaks the sources on purpose, one change at a time, and looks whether the tests notice.

Run from the project's folder, of which it changes nothing: it works in copies under build-mutate, one for
each of QUILLO_JOBS. A line of tools/mutate-folders.txt names a folder, the test programs that judge it,
nearest first, and after a bar those that judge its memory orders and locks under ThreadSanitizer. A line of
tools/mutate-reasons.txt tells of a change that nobody can see: file, a piece of the line as it is, a piece of
it as it becomes, the reason, with tabs between.

A change is caught when a program fails, dies or does not end. It changes nothing when all object files come
out the same. What the compiler rejects is not counted.
"""
import argparse
import collections
import concurrent.futures
import contextlib
import dataclasses
import filecmp
import hashlib
import itertools
import os
import pathlib
import random
import resource
import shutil
import signal
import subprocess
import sys
import threading
import time

from mutations import changes_of

TREES = {'mutate': 'build-mutate', 'tsan': 'build-tsan'}
GREATEST_MEMORY = 4 << 30


@dataclasses.dataclass
class Unbroken:
    """What a test program is while nothing is broken."""
    objects: list
    fingerprint: bytes = b''
    seconds: float = 600


class Workshop:
    """A copy of the project with its own trees, for one thread."""

    def __init__(self, number):
        self.root = pathlib.Path('build-mutate', str(number)).absolute()
        self.home = self.root / 'build-home'
        self.unbroken = {}
        self.broken = None
        mirror(self.root)
        shutil.rmtree(self.home, ignore_errors=True)
        self.home.mkdir()

    def judge(self, change, text, programs):
        """caught, survived, nothing (changed), or rejected (by the compiler)."""
        if self.broken != (change.path, text):
            self.mend()
        preset = change.preset(text)
        self.prepare(preset, programs)
        self.broken = change.path, text
        (self.root / change.path).write_text(change.apply(text))
        verdict = 'nothing'
        for program in programs:
            if not self.builds(preset, program):
                return 'rejected'
            unbroken = self.unbroken[preset, program].fingerprint
            if self.fingerprint(preset, program) != unbroken:
                verdict = 'survived'
                if not self.passes(preset, program):
                    return 'caught'
        return verdict

    def mend(self):
        if self.broken:
            path, text = self.broken
            (self.root / path).write_text(text)
            self.broken = None

    def prepare(self, preset, programs):
        for program in programs:
            if (preset, program) not in self.unbroken:
                self.mend()
                self.get_to_know(preset, program)

    def get_to_know(self, preset, program):
        """Builds this program and runs it once, for the time that it takes."""
        tree = self.root / TREES[preset]
        if not (tree / 'build.ninja').exists():
            self.run('cmake', '--preset', preset, '--log-level=WARNING')
        if not self.builds(preset, program):
            raise RuntimeError(f'{program} cannot be built, preset {preset}, in {self.root}')
        inputs = subprocess.check_output(['ninja', '-C', tree, '-t', 'inputs', program], text=True)
        unbroken = Unbroken([name for name in inputs.split('\n') if name.endswith('.o')])
        self.unbroken[preset, program] = unbroken
        unbroken.fingerprint = self.fingerprint(preset, program)
        start = time.monotonic()
        if not self.passes(preset, program):
            del self.unbroken[preset, program]
            raise RuntimeError(f'{program} fails as it is, preset {preset}, in {self.root}')
        unbroken.seconds = 10 + 5 * (time.monotonic() - start)

    def builds(self, preset, program):
        return self.run('ninja', '-C', TREES[preset], '-j', '1', program)

    def fingerprint(self, preset, program):
        objects = (self.root / TREES[preset] / name for name in self.unbroken[preset, program].objects)
        return hashlib.sha1(b''.join(path.read_bytes() for path in objects)).digest()

    def passes(self, preset, program):
        path = next(path for path in (self.root / TREES[preset]).glob(f'**/{program}') if path.is_file())
        return self.run(path, '--gtest_fail_fast', '--gtest_brief=1', where=self.home, HOME=str(self.home),
                        seconds=self.unbroken[preset, program].seconds,
                        memory=preset != 'tsan' and GREATEST_MEMORY)

    def run(self, *command, where=None, seconds=600, memory=0, **variables):
        """Whether it succeeds in time. Nothing that it has started goes on or writes elsewhere."""
        kept = {name: value for name, value in os.environ.items() if not name.startswith('XDG_')}
        variables |= {'TMPDIR': str(self.home), 'CCACHE_BASEDIR': str(self.root)}
        process = subprocess.Popen(
            command, cwd=where or self.root, start_new_session=True, stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=kept | variables,
            preexec_fn=lambda: memory and resource.setrlimit(resource.RLIMIT_AS, (memory, memory)))
        try:
            return process.wait(seconds) == 0
        except subprocess.TimeoutExpired:
            return False
        finally:
            with contextlib.suppress(ProcessLookupError):
                os.killpg(process.pid, signal.SIGKILL)
            process.wait()


def mirror(copy):
    """Makes `copy` what the project is, but for what was built, and touches nothing that is the same."""
    wanted = set(files_below('.'))
    for path in wanted:
        there = copy / path
        if not there.exists() or not filecmp.cmp(path, there, shallow=False):
            there.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(path, there)
    for path in set(files_below(copy)) - wanted:
        (copy / path).unlink()


def files_below(root):
    for folder, folders, files in os.walk(root):
        folders[:] = [name for name in folders if not name.startswith(('.git', '.cache', 'build'))]
        yield from (os.path.relpath(os.path.join(folder, name), root) for name in files)


def lines_of(path):
    return [line for line in pathlib.Path(path).read_text().splitlines() if line and not line.startswith('#')]


def judges_of_project():
    """Each folder, and the programs that judge it in each preset."""
    for line in lines_of('tools/mutate-folders.txt'):
        (folder, *programs), orders = (part.split() for part in (line + '|').split('|')[:2])
        yield folder, {'mutate': programs, 'tsan': orders}


def chosen_changes(folder, programs, asked):
    """So many changes of a folder, each with its file's text."""
    paths = sorted(path for path in pathlib.Path(folder).glob('*.[ch]pp') if f'/{asked.wanted}' in f'/{path}')
    texts = {str(path): path.read_text() for path in paths}
    there = [(change, text) for path, text in texts.items() for change in changes_of(path, text)
             if programs[change.preset(text)]]
    return sorted(random.Random(asked.seed).sample(there, min(asked.most, len(there))))


def shown(change, text, *more):
    number, old, new = change.lines(text)
    changed = ['-' + line for line in old] + ['+' + line for line in new]
    return '\n'.join([f'\n{change.path}:{number}', *changed, *more])


def reason_for(change, text, reasons):
    _, old, new = change.lines(text)
    for name, piece, becomes, reason in reasons:
        if change.path.endswith(name) and any(piece in line for line in old) and \
                (any(becomes in line for line in new) if becomes else not new):
            return reason
    return None


def verdicts(changes, judges):
    """Each change's folder, the change, its file's text and the verdict. Each thread has a workshop."""
    numbers, own = itertools.count(), threading.local()

    def judged(item):
        folder, change, text = item
        return *item, own.workshop.judge(change, text, judges[folder][change.preset(text)])

    def begin():
        own.workshop = Workshop(next(numbers))

    jobs = int(os.environ.get('QUILLO_JOBS', os.cpu_count()))
    with concurrent.futures.ThreadPoolExecutor(jobs, initializer=begin) as pool:
        yield from pool.map(judged, changes)


def table(counts):
    print(f'\n{"folder":40}    made  caught  nothing  explained  survived  score')
    for folder, count in counts.items():
        made = sum(count.values()) - count['rejected']
        visible = count['caught'] + count['survived']
        print(f'{folder:40}{made:8}{count["caught"]:8}{count["nothing"]:9}{count["explained"]:11}'
              f'{count["survived"]:10}{100 * count["caught"] / visible if visible else 100:7.1f}')


def main():
    parser = argparse.ArgumentParser('./dev mutate', description='Breaks the sources: do the tests notice?')
    parser.add_argument('wanted', nargs='?', default='', metavar='FOLDER', help='or a file; else everything')
    parser.add_argument('--seed', default='1', help='which changes are chosen (1)')
    parser.add_argument('--most', type=int, default=100, help='how many of each folder (100)')
    parser.add_argument('--list', action='store_true', help='show the changes and judge nothing')
    asked = parser.parse_args()

    judges = dict(judges_of_project())
    changes = [(folder, *chosen) for folder, programs in judges.items()
               for chosen in chosen_changes(folder, programs, asked)]
    if not changes:
        parser.error(f'no source of the folders in tools/mutate-folders.txt is called {asked.wanted}')
    if asked.list:
        for _, change, text in changes:
            print(shown(change, text))
        return
    reasons = [line.split('\t') for line in lines_of('tools/mutate-reasons.txt')]
    counts = collections.defaultdict(collections.Counter)
    try:
        for number, (folder, change, text, verdict) in enumerate(verdicts(changes, judges), 1):
            if verdict == 'survived':
                reason = reason_for(change, text, reasons)
                verdict = 'explained' if reason else 'survived'
                print(shown(change, text, *(['    ' + reason] if reason else [])), flush=True)
            counts[folder][verdict] += 1
            if sys.stderr.isatty():
                print(f'\r{number} of {len(changes)} ', end='', file=sys.stderr)
    finally:
        table(counts)
    sys.exit(any(count['survived'] for count in counts.values()))


if __name__ == '__main__':
    main()
