"""What a careless or hostile client may send. Some of it is answered; none of it may do harm."""
import random

from client import request

NO_LINE_END = {
    "no line end": b"GET / HTTP/1.0",
    "line feeds alone": b"GET / HTTP/1.0\n\n",
    "carriage returns alone": b"GET / HTTP/1.0\r\r",
    "one byte": b"\0",
    "two routes without a line end": b"switch-access-port-top10 disk-mem-summary HTTP",
}
ODD_REQUESTS = {
    "64 KiB of noise": random.Random(1).randbytes(65536),
    "noise in lines": b"\r\n".join(random.Random(2).randbytes(50) for _ in range(500)),
    "every byte": bytes(range(256)),
    "every byte in a URL": request(bytes(range(256))),
    "a head without a request line": b"Host: quillon\r\nAccept: */*\r\n\r\n",
    "an empty line": b"\r\n",
    "HTTP before the route": b"HTTP GET /switch-access-port-top10-involume.htm\r\n\r\n",
    "a path upwards": request("../../../../etc/passwd"),
    "a path upwards behind a list": request("switch-access-port-top10-../../../../etc/passwd"),
    "a path upwards behind a stored page": request("disk-mem-summary.htm/../../../Quillon.mdb"),
    "a path upwards behind a disk list": request("disk-unix-top10-../../../Quillon.mdb"),
    "a path upwards behind a chart": request("hist45-1-2-switch/../../../../etc/passwd"),
    "backslashes": request(r"switch-access-port-top10-..\..\..\Quillon.mdb"),
    "a NUL": request("switch-access-port-top10-\0.htm"),
    "a NUL behind a path": request("disk-mem-summary/../../Quillon.mdb\0.htm"),
    "percent signs": request("switch-access-port-top10-%2e%2e%2f%2e%2e%2fQuillon.mdb"),
    "a longer name than a file has": request("switch-access-port-top10-" + 300 * "x"),
    "10,000 characters of no route": request(10_000 * "a"),
    "10,000 characters of a list": request("switch-trunk-port-top10-" + 10_000 * "x"),
    "a quotation in SQL": request("switch-access-port-top10-involume';DROP TABLE VLAN;--.htm"),
}
