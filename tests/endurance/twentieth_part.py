"""The connection that is one too many: it drops all, itself included, and counting starts again."""
from contextlib import ExitStack

from figures import Figure
from watched_site import growth

TIMES = 1000
WARM_UP = 20
CONNECTIONS = 20


def twentieth_connection(site, _, run):
    count = run.count(TIMES)
    for _ in range(WARM_UP):
        _fill(site)
    before = site.state()
    dropped = sum(_fill(site) for _ in range(count))
    is_served = bool(site.get(""))
    return [
        Figure("twentieth", count),
        Figure("twentieth_dropped", dropped, least=count * CONNECTIONS),
        Figure("twentieth_served_behind", int(is_served), least=1),
        *growth("twentieth", before, site.state(), run.is_judged),
    ]


def _fill(site):
    """How many of the connections were dropped. The first ones have been answered before."""
    with ExitStack() as all_of_them:
        clients = []
        for _ in range(CONNECTIONS - 1):
            clients.append(all_of_them.enter_context(site.connect()))
            clients[-1].ask("")
        clients.append(all_of_them.enter_context(site.connect()))
        return sum(client.is_dropped() for client in clients)
