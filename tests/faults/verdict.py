"""How a fault is judged: what is wrong with an installation is told, and it stays for a look."""

from demo_night import Night


class Broken(AssertionError):
    """An installation that is not what it has to be."""


def judge(what: str, night: Night, findings: list[str]) -> None:
    """Raises Broken where there are findings, and names the directory."""
    if findings:
        raise Broken("\n  ".join([f"{what}:", *findings, f"the installation: {night.path}"]))


def disturbances(night: Night, said: str, events_before: int = 0) -> list[str]:
    """What a pass that nothing disturbs must not leave. `said` is its own word."""
    findings = [] if said == "imported" else [f"the pass says '{said}'"]
    findings += [f"an event: {event}" for event in night.events()[events_before:]]
    return findings + night.damages()
