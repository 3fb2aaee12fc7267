"""What a service takes once: the record of a report for each connection's number, the memory of
pages, the stack of failures that wait inside each other."""
from contextlib import ExitStack

from mixture import NOTHING
from watched_site import Unsound

CONNECTIONS = 19  # as many as there may be
SILENCE = 0.7     # seconds: a failure waits for half a second


def ask_all_on_all_connections(site, requests):
    """Each of the requests once on each connection, one after the other."""
    with ExitStack() as all_of_them:
        clients = [all_of_them.enter_context(site.connect()) for _ in range(CONNECTIONS)]
        for entry in requests:
            for client in clients:
                _ask(client, entry)
    site.wait_until_alone()


def _ask(client, entry):
    if entry.fresh is not None:
        entry.fresh.unlink(missing_ok=True)
    client.send(entry.data)
    if entry.expected != NOTHING:
        client.receive()
    elif not client.hears_nothing_for(SILENCE):
        raise Unsound(f"an answer to {entry.data!r}")
