"""What has to hold after an import that was disturbed, and after the pass that follows it. Each
procedure returns what does not hold, as texts."""

from dataclasses import dataclass
from datetime import datetime

from history_file import DISK, ROTATIONS, SWITCH, Day, History, Rotation, covered_day

SUMS_OF_SWITCHES = 2  # access and trunk ports
SUMS_OF_DISKS = 1


@dataclass
class Reference:
    """What an undisturbed import makes of a day."""

    today: datetime
    days: dict  # of each rotation the rows of the day
    sums: dict  # of each rotation the rows that the day adds, without their moment

    @classmethod
    def of(cls, before: History, after: History, today: datetime) -> "Reference":
        days = {}
        for rotation in ROTATIONS:
            positions = after.of_day(rotation, covered_day(today))
            days[rotation] = after.days[rotation][positions[0]].rows if positions else []
        return cls(today, days, {rotation: _figures(_added(before, after, rotation))
                                 for rotation in ROTATIONS})

    def findings(self) -> list[str]:
        """Whether it says anything: without rows, trends and sums, all would be equal to it."""
        counts = [len(self.sums[rotation]) for rotation in ROTATIONS]
        if counts != [SUMS_OF_SWITCHES, SUMS_OF_DISKS]:
            return [f"an undisturbed import adds {counts} sums of ports and of storages"]
        trends = {row[-DISK.trends:] for row in self.days[DISK]}
        return [] if self.days[SWITCH] and len(trends) > 1 else ["an undisturbed import is empty"]


def after_a_fault(before: History, found: History, reference: Reference) -> list[str]:
    """Wherever it stopped, an import has touched no table but the one that it took, which holds
    whole rows of its old day and of the new one, and has written each of its sums once at most."""
    findings = []
    for rotation in ROTATIONS:
        taken = before.free(rotation, reference.today)[0]
        findings += [f"{rotation.control}: {new.table} is changed, which was not free"
                     for position, (old, new) in _both(before, found, rotation)
                     if position != taken and new != old]
        row = found.days[rotation][taken]
        if row.table != before.days[rotation][taken].table:
            findings.append(f"{rotation.control}: a row names another table")
        if row.day not in (before.days[rotation][taken].day, covered_day(reference.today)):
            findings.append(f"{rotation.control}: {row.table} is stamped with {row.moment}")
        known = _without_trends(rotation, before.days[rotation][taken].rows
                                + reference.days[rotation])
        if not set(_without_trends(rotation, row.rows)) <= set(known):
            findings.append(f"{row.table}: a row is neither of the old day nor of the new one")
        if len(_added(before, found, rotation)) > len(reference.sums[rotation]):
            findings.append(f"{rotation.sums}: more sums than an import has")
        findings += _lost_sums(before, found, rotation)
    return findings


def after_a_kill(before: History, found: History, reference: Reference) -> list[str]:
    """Beyond that, what counts as done is done: a stamped table is complete, sums are right."""
    findings = after_a_fault(before, found, reference)
    for rotation in ROTATIONS:
        for position in found.of_day(rotation, covered_day(reference.today)):
            findings += _incomplete(rotation, found.days[rotation][position], reference)
        written = _figures(_added(before, found, rotation))
        if written != reference.sums[rotation][:len(written)]:
            findings.append(f"{rotation.sums}: {written} is not what it has to be")
    return findings


def after_the_next_pass(found: History, after: History, reference: Reference) -> list[str]:
    """The pass has taken the first table that was free, if one was, and brought the day into it;
    a table that a killed import had stamped with the same day stays. Nothing else is changed."""
    day = covered_day(reference.today)
    findings = []
    for rotation in ROTATIONS:
        taken = found.free(rotation, reference.today)[:1]
        of_the_day = sorted(found.of_day(rotation, day) + taken)
        findings += [f"{rotation.control}: {new.table} is changed"
                     for position, (old, new) in _both(found, after, rotation)
                     if position not in of_the_day and new != old]
        findings += _lost_sums(found, after, rotation)
        if _is_spoiled(found, rotation, reference):
            continue
        for position in of_the_day:
            old, new = found.days[rotation][position], after.days[rotation][position]
            if new.day != day or new.table != old.table:
                findings.append(f"{rotation.control}: {new.table} holds {new.moment}")
            # The trends are those of the last table of the day.
            findings += _incomplete(rotation, new, reference,
                                    with_trends=position == of_the_day[-1])
        added = _added(found, after, rotation)
        if not of_the_day:
            findings.append(f"{rotation.control}: the day has no table")
        if _figures(added) != reference.sums[rotation]:
            findings.append(f"{rotation.sums}: {added} is not what the day has to add")
        findings += [f"{rotation.sums}: a row of {row[0]}" for row in added
                     if datetime.fromisoformat(row[0][:10]) != day]
    return findings + _wrong_marks(found, after, reference.today)


def is_spoiled(found: History, reference: Reference) -> bool:
    """Whether a day that is not marked stays incomplete all the same: a table of it is stamped,
    which could not be filled, and for another try there is none."""
    return any(_is_spoiled(found, rotation, reference) for rotation in ROTATIONS)


def is_complete(before: History, found: History, reference: Reference) -> bool:
    """Whether nothing at all is missing from the day."""
    return found.is_imported(reference.today) and not after_the_next_pass(before, found, reference)


def _is_spoiled(found: History, rotation: Rotation, reference: Reference) -> bool:
    if found.free(rotation, reference.today):
        return False
    stamped = found.of_day(rotation, covered_day(reference.today))
    return any(_incomplete(rotation, found.days[rotation][position], reference)
               for position in stamped)


def _both(before: History, after: History, rotation: Rotation):
    return enumerate(zip(before.days[rotation], after.days[rotation], strict=True))


def _added(before: History, after: History, rotation: Rotation) -> list[tuple]:
    return after.sums[rotation][len(before.sums[rotation]):]


def _figures(sums: list[tuple]) -> list[tuple]:
    return [row[1:] for row in sums]


def _lost_sums(before: History, after: History, rotation: Rotation) -> list[str]:
    kept = after.sums[rotation][:len(before.sums[rotation])]
    return [] if kept == before.sums[rotation] else [f"{rotation.sums}: an earlier day is changed"]


def _incomplete(rotation: Rotation, row: Day, reference: Reference,
                with_trends: bool = False) -> list[str]:
    wanted, held = reference.days[rotation], row.rows
    if not with_trends:
        wanted, held = _without_trends(rotation, wanted), _without_trends(rotation, held)
    if held == wanted:
        return []
    wrong = sum(one != other for one, other in zip(wanted, held))
    return [f"{row.table}: {len(held)} rows instead of {len(wanted)}, {wrong} of them wrong"]


def _without_trends(rotation: Rotation, rows: list[tuple]) -> list[tuple]:
    return [row[:len(row) - rotation.trends] for row in rows]


def _wrong_marks(before: History, after: History, today: datetime) -> list[str]:
    findings = []
    if not after.is_imported(today):
        findings.append(f"LastImport is {after.marks['LastImport']}")
    if {**before.marks, "LastImport": None} != {**after.marks, "LastImport": None}:
        findings.append(f"General_Info is {after.marks}")
    return findings
