"""Saves the attachments of the newest mail of a mail folder, as a mail program does, and prints
what else the mail says as JSON."""
import json
import sys
from email import message_from_bytes, policy
from pathlib import Path

mails, target = map(Path, sys.argv[1:])
newest = max((mails / "new").iterdir(), key=lambda file: file.stat().st_mtime)
mail = message_from_bytes(newest.read_bytes(), policy=policy.default)
target.mkdir(parents=True, exist_ok=True)
names = []
for part in mail.iter_attachments():
    names.append(part.get_filename())
    (target / Path(names[-1]).name).write_bytes(part.get_payload(decode=True))
print(json.dumps({
    "from": str(mail["From"]),
    "to": str(mail["To"]),
    "subject": str(mail["Subject"]),
    "body": mail.get_body(("plain",)).get_payload(decode=True).decode("latin-1"),
    "attachments": names,
}))
