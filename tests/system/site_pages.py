"""The pages of the site, as far as several tests look at them."""

METRICS = ("involume", "outvolume", "inbroadcast", "inmulticast", "inerrors", "outerrors")
LISTS = [f"switch-{kind}-port-top10-{metric}.htm"
         for kind in ("access", "trunk") for metric in METRICS]

FOOTER = b"<table width='790px' class='footer'>"
PAGE_END = b"</body>\r\n</html>"


def listed_ports(page):
    """How many rows the list on the page has: each links to the charts of its port."""
    return page.count(b"<a href=hist45-")


def unstorable_list(word):
    """A list that is answered and cannot be stored, since its name is none of a file: one
    failure, whose text quotes the name."""
    return f"switch-access-port-top10-{word}/"
