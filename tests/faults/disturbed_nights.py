"""How a night is judged in which something went wrong, and what comes after it: an hour later the
next pass, which repeats the day if its mark is not written, and the next day. Nothing disturbs
these two."""

from dataclasses import dataclass
from pathlib import Path

from history_file import ROTATIONS, History, covered_day
from night_rules import (
    Reference, after_a_fault, after_a_kill, after_the_next_pass, is_complete, is_spoiled)
from output_rules import (
    differences, doubles, halves, other_contents, other_losses, other_mails, other_pages)
from undisturbed_days import undisturbed_days
from verdict import disturbances, judge
from whole_night import Output, WholeNight

IMPORTED, NOT_DUE = "imported", "not due"
WHOLE, INCOMPLETE, REPEATED = "whole", "incomplete", "repeated by the next pass"
OUTCOMES = (WHOLE, INCOMPLETE, REPEATED)  # of a day


@dataclass
class Day:
    """One that nothing has disturbed."""

    history: Reference
    output: Output


class DisturbedNights:
    """Copies of one installation, of which each has its own disturbance."""

    def __init__(self, name: str, night: WholeNight, scratch: Path):
        self.name = name
        self.scratch = scratch
        self.night = night
        self._before = night.history()
        self._first, self._second = self._undisturbed()

    def is_whole(self, found: History, output: Output) -> bool:
        return (self._has_first_day(found)
                and not differences(output, self._first.output))

    def judge_fault(self, night: WholeNight, what: str, said: str, can_tell: bool = True,
                    is_of_a_page: bool = False) -> str:
        """Behind a pass that has met a fault, of which it could tell or not, and which was once and
        with the file of a page or not. Raises Broken, or tells what became of the day."""
        found = night.history_as_left()
        output = night.output()
        is_whole = self.is_whole(found, output)
        findings = after_a_fault(self._before, found, self._first.history)
        findings += halves(output, self._first.output, was_killed=False)
        if said != (IMPORTED if found.is_imported(night.day) else NOT_DUE):
            findings.append(f"the pass says '{said}'")
        if not is_whole and can_tell and not night.events():
            findings.append("the night failed without a word")
        if is_of_a_page:
            findings += after_the_next_pass(self._before, found, self._first.history)
            findings += other_losses(output, self._first.output, night.events())
        return self._follow(night, what, found, output, findings, is_whole)

    def judge_kill(self, night: WholeNight, what: str) -> str:
        found = night.history_as_left()
        output = night.output()
        findings = after_a_kill(self._before, found, self._first.history)
        findings += halves(output, self._first.output, was_killed=True)
        if self._has_first_day(found):
            findings += other_contents(output, self._first.output)
        return self._follow(night, what, found, output, findings, self.is_whole(found, output))

    def _follow(self, night: WholeNight, what: str, found: History, output: Output,
                findings: list[str], is_whole: bool) -> str:
        stays = found.is_imported(night.day) or is_spoiled(found, self._first.history)
        became = WHOLE if is_whole else INCOMPLETE if stays else REPEATED
        findings += self._next_pass(night, found, output)
        findings += self._next_day(night, self._has_first_day(night.history()))
        judge(f"{self.name}, {what}", night, findings)
        night.remove()
        return became

    def _next_pass(self, night: WholeNight, found: History, output: Output) -> list[str]:
        is_due = not found.is_imported(night.day)
        events_before = len(night.events())
        night.forget_mails()
        said = night.run_pass(night.next_pass)
        then, history = night.output(), night.history()
        findings = doubles(output.mails + then.mails) + _double_days(history, night)
        # What a kill has left goes with the old pages, so it stays where none are built.
        findings += halves(then, self._first.output, was_killed=not is_due)
        if said != (IMPORTED if is_due else NOT_DUE):
            findings.append(f"it says '{said}'")
        findings += [f"an event: {event}" for event in night.events()[events_before:]]
        if is_due:
            findings += after_the_next_pass(found, history, self._first.history)
            findings += other_mails(then, self._first.output)
            if not is_spoiled(found, self._first.history):
                findings += other_pages(then, self._first.output)
            if self._has_first_day(history):
                findings += other_contents(then, self._first.output)
        return [f"the next pass: {finding}" for finding in findings]

    def _has_first_day(self, found: History) -> bool:
        """All of it, and nothing twice: the pages built from it show what they always show."""
        return is_complete(self._before, found, self._first.history)

    def _next_day(self, night: WholeNight, is_sound: bool) -> list[str]:
        events_before = len(night.events())
        night.let_a_day_pass()
        night.forget_mails()
        before = night.history()
        said = night.run_pass(night.import_moment)
        output = night.output()
        findings = after_the_next_pass(before, night.history(), self._second.history)
        findings += halves(output, self._second.output, was_killed=False)
        findings += other_pages(output, self._second.output)
        findings += other_mails(output, self._second.output)
        if is_sound:
            findings += other_contents(output, self._second.output)
        return [f"the next day: {finding}"
                for finding in findings + disturbances(night, said, events_before)]

    def _undisturbed(self) -> tuple[Day, Day]:
        night = self.night.copy_to(self.scratch / "undisturbed")
        days = []
        for reference in undisturbed_days(self.name, night, 2):
            output = night.output()
            judge(f"{self.name}, undisturbed", night,
                  [] if output.pages and output.mails else ["neither pages nor mails"])
            days.append(Day(reference, output))
            night.forget_mails()
        return days[0], days[1]


def _double_days(history: History, night: WholeNight) -> list[str]:
    """One table was free for the day, so no second one can have been taken for it."""
    counts = {rotation.control: len(history.of_day(rotation, covered_day(night.day)))
              for rotation in ROTATIONS}
    return [f"{control}: {count} rows of the day" for control, count in counts.items()
            if count > 1]
