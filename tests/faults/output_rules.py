"""What has to hold of the pages and mails of a night. Each procedure returns what does not hold, as
texts."""

from collections import Counter

from whole_night import Mail, Output

_END = 24  # bytes, which are the same in a page of every day
_TEMPORARY = "~new"  # begins the name under which a page is written before it is moved into place


def halves(output: Output, reference: Output, was_killed: bool) -> list[str]:
    """Whatever has happened: a page and an attachment is there whole, or not at all. A process that
    was killed may leave the file that it was writing, under a name that nobody asks for."""
    findings = []
    for folder, wanted in ((output.pages, reference.pages),
                           (output.mail_pages, reference.mail_pages),
                           *((mail.attachments, reference.mail_pages) for mail in output.mails)):
        for name, data in folder.items():
            if name.startswith(_TEMPORARY):
                findings += [] if was_killed else [f"{name} is left over"]
            elif not data.endswith(wanted.get(name, data)[-_END:]):
                findings.append(f"{name} is half: {len(data)} bytes")
    return findings


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
    return other_pages(output, reference) + other_mails(output, reference) + [
        f"{name} is another page" for name in sorted(reference.pages.keys() & output.pages)
        if reference.pages[name] != output.pages[name]]


def _sent(output: Output) -> list[tuple]:
    """Each mail in its order, and what was in it."""
    return [(mail.recipient, sorted(mail.attachments)) for mail in output.mails]
