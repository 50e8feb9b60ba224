"""The outcomes of mutants, and the share that is killed."""

from operators import ROOT

KILLED, SURVIVED = "killed", "survived"
STILLBORN, EQUIVALENT = "does not compile", "equivalent"

REQUIRED = 0.95
LISTED = ROOT / "tests" / "equivalent_mutants"


def plain(line):
    return " ".join(line.split())


def read_equivalents():
    """Reads the list of mutants that no test can kill; its head describes its
    format. Returns the reasons by (file, line, new line), and the entries whose
    old lines are not found exactly once."""
    reasons, stale = {}, []
    for entry in LISTED.read_text().split("\n\n")[1:]:
        file, *rest = entry.strip().split("\n")
        old = [plain(line[2:]) for line in rest if line[:2] in ("  ", "- ")]
        new, *reason = rest[len(old):]
        path = ROOT / file
        lines = path.read_text().split("\n") if path.is_file() else []
        lines = [plain(line) for line in lines]
        ends = [end for end in range(len(old), len(lines) + 1)
                if lines[end - len(old):end] == old]
        if len(ends) == 1:
            reasons[file, ends[0], plain(new[2:])] = "\n    ".join(reason)
        else:
            stale.append(entry)
    return reasons, stale


def report(results):
    """Prints the results, (mutant, outcome) pairs. Returns whether enough
    mutants are killed."""
    reasons, stale = read_equivalents()
    lists = {kind: [] for kind in (KILLED, SURVIVED, STILLBORN, EQUIVALENT)}
    for mutant, outcome in results:
        reason = reasons.get((mutant.file, mutant.line, plain(mutant.after)))
        if outcome == SURVIVED and reason:
            outcome = EQUIVALENT
            print(f"\nequivalent {mutant}\n    {reason}")
        lists[outcome].append(mutant)
    for mutant in lists[SURVIVED]:
        print(f"\nSURVIVED   {mutant}")
    for entry in stale:
        print(f"\n{LISTED.name}: not at one place of the sources:\n{entry}")
    killed, survived = len(lists[KILLED]), len(lists[SURVIVED])
    score = killed / (killed + survived) if killed + survived else 0.0
    print(f"\nKilled: {killed} of {killed + survived} mutants "
          f"({100 * score:.1f} per cent). Left out: {len(lists[EQUIVALENT])} "
          f"equivalent, {len(lists[STILLBORN])} that do not compile.")
    return score >= REQUIRED and not stale
