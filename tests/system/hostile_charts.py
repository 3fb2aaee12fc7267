"""URLs of charts that are none, or that want more than a chart: what becomes of each."""

NINES = 10_000 * "9"

# No chart goes by them: nothing is sent, and nothing has failed.
GIVEN_UP = (
    "hist45-", "hist45-.htm", "hist45-12", "hist45-12.htm", "hist45-x.htm", "hist45-12-34",
    "hist45-12-34.HTM", "hist45-12-34%2ehtm", "histdisk45-", "histdisk45-900.htm",
    "histdisk45-900-C_.htm", "histdisk45-900-disk-unix-top10-a.htm", "histdisk45-900-C_-DISK-a.htm",
    "histdisksearch45-", "histdisksearch45-900-C_-search-1.htm")

# Their numbers are none, or their words stand in no order: nothing is sent, and that is a failure.
FAILED = (
    "hist45--1.htm", "hist45-1-.htm", "hist45--1-2.htm", "hist45-x-1.htm", "hist45-12x-34",
    "hist45-99999999999-1.htm", "hist45-1-2147483648.htm", f"hist45-{NINES}-1.htm",
    f"hist45-1-{NINES}.htm", "hist45-1-2.htm-switch-a.htm", "hist45-%31-2.htm",
    "hist45-1%002-3.htm", "hist45-1\0-2.htm", "hist45-'1'-2.htm", "hist45-1 OR 1=1-2.htm",
    "hist45-1-2;DROP TABLE VLAN.htm", "hist45-../..-1.htm", "hist45-1-../../etc/passwd.htm",
    "histdisk45--C_-disk-a.htm", "histdisk45-x-C_.htm", "histdisk45-1/..-C_-disk-a.htm",
    "histdisksearch45-12345678901-C_-disk-a.htm", "histdisk45-1-HTTP-disk-a.htm")

# They are answered, with as much as there is.
ANSWERED = (
    "hist45-0-0.htm", "hist45-2147483647-2147483647.htm", "hist45-1-2-../../../etc/passwd.htm",
    "hist45-1-2-", "hist45-1-2-%2e%2e%2fswitch%2f..%5c%00.htm", "hist45-1-2-switch-*?[a]",
    "hist45-1-2-switch-a.htm';DROP TABLE VLAN;--", "hist45-1-2-switch \xe4\xff.htm",
    "histdisk45-1-../../../secret-disk-a.htm", "histdisk45-1-%2e%2e-disk-a.htm",
    "histdisk45-1-[a]*?-disk-a.htm", "histdisk45-1-a\0b-disk-a.htm",
    r"histdisk45-1-C_\..\..-disk-a.htm", f"histdisk45-1-{5_000 * 'x'}-disk-a.htm",
    "-port-summary", "x-port-summary/../../../Quillon.mdb", "hist45d-switch-",
    "hist45d-switch-%2e%2e%2fx.htm", "hist45d-switch-no-port-summary';--")

# They are answered, and the page that they name cannot be read: its name is none of a file.
UNREADABLE = (
    "hist45-1-2-switch/../../../../../etc/passwd", "hist45-1-2-switch/../../../secret.htm",
    r"hist45-1-2-switch\..\..\..\secret.htm", "hist45-1-2-switch\0.htm",
    f"hist45-1-2-switch-{300 * 'x'}", "histdisk45-1-C_-disk-/../../../secret.htm",
    r"histdisksearch45-1-C_-disk-\..\..", "histdisk45-1-C_-disk-\0")

# They are answered, and cannot be stored.
UNSTORABLE = (
    "hist45d-switch-access-port-summary/../../../new.htm", "hist45d-switch-/../../../Quillon.mdb",
    r"hist45d-switch-access-port-summary\new.htm", "hist45d-switch-trunk-port-summary\0.htm",
    f"hist45d-switch-{300 * 'y'}")
