"""The days that the disturbed ones are compared with."""

from collections.abc import Iterator

from demo_night import Night
from night_rules import Reference, after_the_next_pass
from verdict import disturbances, judge


def undisturbed_days(name: str, night: Night, count: int) -> Iterator[Reference]:
    """Lets so many days pass, one for each step, and removes the night at last. Raises Broken where
    something is wrong with one of them."""
    for _ in range(count):
        before, events_before = night.history(), len(night.events())
        said = night.run_pass(night.import_moment)
        after = night.history()
        reference = Reference.of(before, after, night.day)
        judge(f"{name}, undisturbed", night,
              reference.findings() + after_the_next_pass(before, after, reference)
              + disturbances(night, said, events_before))
        yield reference
        night.let_a_day_pass()
    night.remove()
