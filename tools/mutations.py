# SPDX-License-Identifier: GPL-3.0-or-later
"""Which single changes of a C++ source `./dev mutate` tries. They are found by the look of the code, which
the project's format makes regular; what is not valid C++ afterwards the compiler sorts out."""
import dataclasses
import re

@dataclasses.dataclass(frozen=True, order=True)
class Change:
    """The text between two places of a file, and what takes its place."""
    path: str
    start: int
    end: int
    new: str

    def apply(self, text):
        return text[:self.start] + self.new + text[self.end:]

    def lines(self, text):
        """The number of the first line touched, these lines as they are, and as they become."""
        first, last = text.rfind('\n', 0, self.start) + 1, text.find('\n', self.end)
        after = self.apply(text)[first:last + len(self.new) - (self.end - self.start)]
        return text.count('\n', 0, first) + 1, *([line for line in lines.split('\n') if line.strip()]
                                                 for lines in (text[first:last], after))

    def preset(self, text):
        """Where it is judged: what only another thread would notice, under ThreadSanitizer."""
        weakened = self.new.startswith('memory_order')
        unlocked = not self.new and LOCK.match(text[self.start:self.end])
        return 'tsan' if weakened or unlocked else 'mutate'


# What is not code; and numbers, whose separators would be taken for the beginning of a character.
NO_CODE = re.compile(r'''//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:\\\n|[^\n])*|\bstatic_assert\(.*?\);'''
                     r'''|R"(\w*)\(.*?\)\1"'''
                     r'''|"(?:\\.|[^"\\\n])*"|\b\d[\w']*|'(?:\\.|[^'\\\n])+\'''', re.S | re.M)
OPPOSITES = {'<': '<=', '<=': '<', '>': '>=', '>=': '>', '==': '!=', '!=': '==', '&&': '||', '||': '&&',
             '!': '', '+': '-', '-': '+', '+=': '-=', '-=': '+=', '++': '--', '--': '++', 'true': 'false',
             'false': 'true', 'std::min': 'std::max', 'std::max': 'std::min'}
# The format puts spaces around what stands between two values, and none into template arguments.
OPPOSABLE = re.compile(r'(?<=\s)(?:[<>]=?|[=!]=|&&|\|\||[+-]=?)(?=\s)|\+\+|--|(?<![\w)])!(?=[\w(:*])'
                       r'|\b(?:true|false|std::min|std::max)\b')
NUMBER = re.compile(r"(?<![\w.'])(0x[0-9a-fA-F']+|[0-9][0-9']*)([uUlLzZ]*)(?![\w.'])")
ORDER = re.compile(r'memory_order_(?:acquire|release|acq_rel|seq_cst)')
LOCK = re.compile(r'const [\w:]*(?:RenderEntry|_lock|_guard)\b')
BEFORE_CONDITION = re.compile(r'(?:[,;{}?]| = |\breturn | : | << )$')
LABEL = re.compile(r'\s*(?:case\b[^;{}]*?[^:]:(?!:)\s*|default:\s*)*')
ASSIGNMENT = re.compile(r'([\w.>-]+(?:\[[^=]*\])?) = ')
# Room that is reserved nobody sees; without a value or a declaration there is no program.
NEVER_DROPPED = re.compile(r'[\w.]+\.reserve\(|(?:const|constexpr|static|auto)\b.*? = |return [^;]|using\b'
                           r'|(?!delete\b|throw\b|return;)(?:const )?[\w:]+(?:<[^;]*>)?[*&]* \w+(?: = |;)|;',
                           re.S)


def changes_of(path, text):
    """Every change of a file, in order of place."""
    code = NO_CODE.sub(blanked, text)
    found = {*changed_words(path, code), *turned_conditions(path, code)}
    for brace in re.finditer(r'(?<=[\s(]){', code):
        if opens_block(code, brace.start()):
            found.update(changed_statements(path, text, code, brace.end()))
    return sorted(found)


def blanked(match):
    piece = match.group()
    return piece if piece[0].isdigit() else re.sub(r'[^\n]', 'x' if piece[0] in 'R"\'' else ' ', piece)


def changed_words(path, code):
    for match in OPPOSABLE.finditer(code):
        yield Change(path, *match.span(), OPPOSITES[match.group()])
    for match in NUMBER.finditer(code):
        digits = match.group(1).replace("'", '')
        more = f'{int(digits, 16) + 1:#x}' if digits.startswith('0x') else str(int(digits) + 1)
        yield Change(path, *match.span(), more + match.group(2))
    for match in ORDER.finditer(code):
        yield Change(path, *match.span(), 'memory_order_relaxed')


def turned_conditions(path, code):
    places = []
    for match in re.finditer(r'\b(?:if|while) \(', code):
        end = closing(code, match.end() - 1)
        places.append((max(match.end(), code.rfind('; ', match.end(), end) + 2), end))
    for match in re.finditer(r'\s\? ', code):
        places.append((beginning(code, match.start()), match.start()))
    for start, end in places:
        condition = code[start:end]
        single = not re.search(r'&&|\|\|', condition)
        by_a_word = single and re.match(r'!|.*?[=!]= ', condition)
        if condition.strip() and not by_a_word and not re.match(r'(?:const )?[\w:]+[*&]* \w+ = ', condition):
            yield Change(path, start, end, f'!({condition})')


def beginning(code, end):
    """Where the condition before a question mark begins."""
    depth, place = 0, end
    while place > 0:
        letter = code[place - 1]
        depth += (letter in ')]}') - (letter in '([{')
        if depth < 0 or depth == 0 and BEFORE_CONDITION.search(code[place - 9:place]):
            break
        place -= 1
    return end - len(code[place:end].lstrip())


def closing(code, start):
    """The place of the bracket that closes the one at `start`."""
    depth = 0
    for place in range(start, len(code)):
        depth += (code[place] in '([{') - (code[place] in ')]}')
        if depth == 0:
            return place
    return len(code)


def opens_block(code, brace):
    head = re.split(r'[;{}]', code[:brace])[-1].strip()
    return not re.search(r'(?:[=,(]|\breturn)$', head) and \
        not re.match(r'(?:template <.*>\s*)?(?:inline )?(?:namespace|class|struct|enum|union)\b', head, re.S)


def changed_statements(path, text, code, place):
    """Each statement of a block dropped, and neighbours that call something exchanged."""
    before = None
    while True:
        label = LABEL.match(code, place)
        start = label.end()
        place = end_of_statement(code, start)
        if place is None:
            return
        if NEVER_DROPPED.match(code[start:place]):
            before = None
            continue
        if not re.match(r'if [^;]*{[^;{]*;\s*}$', code[start:place]):
            yield Change(path, start, place, '')
        if before and not label.group().strip() and depend(code[slice(*before)], code[start:place]):
            exchanged = text[start:place] + text[before[1]:start] + text[slice(*before)]
            yield Change(path, before[0], place, exchanged)
        before = start, place


def depend(one, other):
    """Whether their order may matter: both call something, and assign not only to what the other ignores."""
    targets = [ASSIGNMENT.match(statement) for statement in (one, other)]
    return '(' in one and '(' in other and \
        not (all(targets) and targets[0].group(1) not in other and targets[1].group(1) not in one)


def end_of_statement(code, place):
    """Behind its semicolon or its blocks; None where the block around it ends."""
    while place < len(code) and code[place] != '}':
        if code[place] == ';':
            return place + 1
        is_block = code[place] == '{' and code[place - 1].isspace() and opens_block(code, place)
        if code[place] in '([{':
            place = closing(code, place)
        place += 1
        if is_block and not re.match(r'\s*(?:else|catch|while)\b', code[place:place + 200]):
            return place
    return None
