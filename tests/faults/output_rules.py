"""What has to hold of the pages and mails of a night. Each procedure returns what does not hold, as
texts."""

from collections import Counter
from collections.abc import Iterator

from whole_night import Mail, Output

_END = 24  # bytes, which are the same in a page of every day
_TEMPORARY = "~new"  # begins the name under which a page is written before it is moved into place


def halves(output: Output, reference: Output, was_killed: bool) -> list[str]:
    """Whatever has happened: a page and an attachment is there whole, or not at all. A process that
    was killed may leave the file that it was writing, under a name that nobody asks for."""
    findings = []
    for name, data, wanted in _files(output, reference):
        if name.startswith(_TEMPORARY):
            findings += [] if was_killed else [f"{name} is left over"]
        elif wanted is None:
            findings.append(f"{name} is new")
        elif not data.endswith(wanted[-_END:]):
            findings.append(f"{name} is half: {len(data)} bytes")
    return findings


def other_contents(output: Output, reference: Output) -> list[str]:
    """Byte for byte, of what is there: wherever all figures of the day could be read."""
    return [f"{name} is another page" for name, data, wanted in _files(output, reference)
            if wanted not in (None, data)]


def other_losses(output: Output, reference: Output, events: list[str]) -> list[str]:
    """Behind one failure with the file of a page: that page alone may be missing, or be missing
    from its mails, and an event has to name it."""
    lost = reference.pages.keys() - output.pages
    lost |= {name for one, other in zip(reference.mails, output.mails)
             for name in one.attachments.keys() - other.attachments}
    receivers, wanted = ([mail.recipient for mail in one.mails] for one in (output, reference))
    return (other_contents(output, reference)
            + ([] if receivers == wanted else [f"the mails are for {receivers}"])
            + ([f"{len(lost)} pages are missing: {sorted(lost)}"] if len(lost) > 1 else [])
            + [f"no event names {name}" for name in lost
               if not any(name in event for event in events)])


def doubles(mails: list[Mail]) -> list[str]:
    """However often a day was tried, nobody gets its mail twice."""
    counts = Counter(mail.recipient for mail in mails)
    return [f"{count} mails to {name}" for name, count in counts.items() if count > 1]


def other_pages(output: Output, reference: Output) -> list[str]:
    """By their names alone: the same page shows another day in another way."""
    return ([f"{name} is missing" for name in sorted(reference.pages.keys() - output.pages)]
            + [f"{name} is new" for name in sorted(output.pages.keys() - reference.pages)])


def other_mails(output: Output, reference: Output) -> list[str]:
    return ([] if _sent(output) == _sent(reference) else
            [f"the mails are {_sent(output)}"])


def differences(output: Output, reference: Output) -> list[str]:
    """The same, byte for byte."""
    return (other_pages(output, reference) + other_mails(output, reference)
            + other_contents(output, reference))


def _files(output: Output, reference: Output) -> Iterator[tuple[str, bytes, bytes | None]]:
    """The pages and attachments that are there: the name, the bytes, and those they have to be."""
    attached = {name: data for mail in reference.mails for name, data in mail.attachments.items()}
    for folder, wanted in ((output.pages, reference.pages),
                           (output.mail_pages, reference.mail_pages),
                           *((mail.attachments, attached) for mail in output.mails)):
        for name, data in folder.items():
            yield name, data, wanted.get(name)


def _sent(output: Output) -> list[tuple]:
    """Each mail in its order, and what was in it."""
    return [(mail.recipient, sorted(mail.attachments)) for mail in output.mails]
