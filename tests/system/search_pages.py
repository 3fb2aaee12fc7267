"""The searches as a browser sends them, and the tables that are to answer them, word by word."""
import re

from search_network import fill, user_of
from site_pages import FOOTER, PAGE_END

LATIN, UTF8 = "ISO-8859-1", "UTF-8"
MAC, NAME, ALIAS, DISK = (
    "search-mac-ip", "search-device-port-name", "search-device-port-alias", "search-device-disk")
STORED = {MAC: "switch-mac-ip-1.htm", NAME: "switch-device-port-name-1.htm",
          ALIAS: "switch-device-port-alias-1.htm", DISK: "disk-search-1.htm"}
MOST_USED = "usedpercent-desc"
ALL = {MAC: {"MacIpName": "02*"}, NAME: {"DeviceName": "Stapel", "PortName": "*"},
       ALIAS: {"DeviceName": "*", "PortName": "*"},
       DISK: {"DeviceName": "*", "DiskName": "*", "OrderBy": MOST_USED}}

_FIELD = re.compile(rb"<input class='inputField' type='text' name='(\w+)' value='(.*?)'/>\r\n")
_CHOSEN = re.compile(rb"<option selected='selected' value='([^']*)'>")
_BAND = """\
<table width='790px' class='repHeader'>
  <tr>
    <td width='240px'><table class='repHeader2'>
      <tr>
        <td width='50px'>Report:</td>
        <td width='190px'>{report}</td>
      </tr>
      <tr>
        <td width='50px'>Shown:</td>
        <td width='200px'>{shown}</td>
      </tr>
    </table></td>
    <td width='310px'>{head}</td>
    <td width='240px'><table class='repHeader2'>
      <tr>
        <td width='40px'>Start:</td>
        <td width='200px'></td>
      </tr>
      <tr>
        <td width='40px'>End:</td>
        <td width='200px'></td>
      </tr>
    </table></td>
  </tr>
</table>
<br>
"""
_TABLE = """\
<table width='790px' class='tableData'>
  <tr>
    <th width='150px' style='text-align:left'>Device</th>
    <th width='130px' style='text-align:left'>{second}</th>
    <th width='85px'>{heads[0]}</th>
    <th width='85px'>{heads[1]}</th>
    <th width='85px'>{heads[2]}</th>
    <th width='85px'>{heads[3]}</th>
    <th width='85px'>{heads[4]}</th>
    <th width='85px' style='border-right:0px'>{heads[5]}</th>
  </tr>
{rows}</table>
<br>
"""
_CELLS = """\
    <td width='85px'>{cells[0]}</td>
    <td width='85px'>{cells[1]}</td>
    <td width='85px'>{cells[2]}</td>
    <td width='85px'>{cells[3]}</td>
    <td width='85px'>{cells[4]}</td>
    <td width='85px' style='border-right:0px'>{cells[5]}</td>
  </tr>
"""
_PORT = """\
  <tr class='tableData{parity}' onMouseOver="this.className='tableDataActive'" \
onMouseOut="this.className='tableData{parity}'">
    <td width='150px' style='text-align:left'><a href={link}>{port.name}</a></td>
    <td width='130px' style='text-align:left'><a href=# onMouseOver="popupShow('t{place}')" \
href=# onMouseOut="popupHide('t{place}')">{port.port}</a></td>
    <div id='t{place}' class='popupTable' style='top:{top}px'>
    <div class='div-table'>
    <div class='div-table-caption'><b>{port.port}&nbsp;&nbsp;&nbsp;&nbsp Index: {port.number}\
&nbsp;&nbsp;&nbsp;&nbsp Admin: up&nbsp;&nbsp;&nbsp;&nbsp Oper: down</b></div>
{popup}    </div></div>
"""
_POPUP_ROW = """\
    <div class='div-table-row'>
    <div class='div-table-col'><b>{word}</b></div>
    <div class='div-table-col'>{value}</div></div>
"""
_STORAGE = """\
  <tr class='tableData{parity}'>
    <td width='150px' style='text-align:left'><a href={link}>{storage.name}</a></td>
    <td width='130px' style='text-align:left'>{storage.storage}</td>
"""
_METRICS = ("In Volume", "Out Volume", "In Broadcast", "In Multicast", "In Errors", "Out Errors")
_SIZES = ("Total", "Free", "Used", "Used %", "Trend 14d", "Trend 30d")
_REPORTS = {MAC: "MAC and IP Search", NAME: "Port Search", ALIAS: "Port Search",
            DISK: "Disk Search"}


def speaking(charset):
    """Prepares a site with the network of the searches, whose pages are in that charset."""
    def prepare(site):
        fill(site)
        site.charset = charset
        site.set("Settings_WebServer", CharSet=charset)
    return prepare


def post(action, charset=LATIN, **fields):
    """Head and body together, as a browser sends them."""
    body = "".join(f"{name}={value}\r\n" for name, value in fields.items()).encode(charset)
    head = (f"POST /{action} HTTP/1.1\r\nHost: quillon\r\nContent-Type: text/plain\r\n"
            f"Content-Length: {len(body)}\r\n\r\n")
    return head.encode() + body


def fields_of(page, charset=LATIN):
    """What the fields of the form on a page show; with the order of a disk search."""
    shown = {name.decode(): value.decode(charset) for name, value in _FIELD.findall(page)}
    if "DiskName" in shown:
        shown["OrderBy"] = _CHOSEN.findall(page)[-1].decode()
    return shown


def result_of(page):
    """Band and table of a page."""
    _, band, rest = page.partition(b"<table width='790px' class='repHeader'>")
    result, footer, end = rest.partition(FOOTER)
    if not band or not footer or not end.endswith(PAGE_END):
        raise AssertionError(f"not a page of a search: {page[-300:]!r}")
    return band + result


def port_link(port, action):
    return f"hist45-{port.device}-{port.number}-{STORED[action]}"


def storage_link(storage):
    return f"histdisksearch45-{storage.device}-{storage.word}-{STORED[DISK]}"


def port_table(site, action, shown, ports):
    """The result of a port search on connection 1."""
    return address_table(site, action, shown, [(port, user_of(port)) for port in ports])


def address_table(site, action, shown, hits):
    """The same of ports with the users that are to stand with them."""
    rows = "".join(_port_row(place, port, user, action)
                   for place, (port, user) in enumerate(hits, start=1))
    return _page(site, action, shown, "Search Result", second="Port", heads=_METRICS, rows=rows)


def storage_table(site, shown, storages, head="Highest Used Percent"):
    """The result of a disk search on connection 1."""
    rows = "".join(_STORAGE.format(parity=_parity(place), link=storage_link(storage),
                                   storage=storage) + _CELLS.format(cells=storage.cells)
                   for place, storage in enumerate(storages, start=1))
    return _page(site, DISK, shown, head, second="Storage", heads=_SIZES, rows=rows)


def _page(site, action, shown, head, **table):
    text = _BAND.format(report=_REPORTS[action], shown=shown, head=head)
    return (text + _TABLE.format(**table)).replace("\n", "\r\n").encode(site.charset, "replace")


def _parity(place):
    return "Odd" if place % 2 else "Even"


def _port_row(place, port, user, action):
    mac = f"{user.mac}&nbsp;&nbsp(LastSeen: {user.day})" if user else ""
    words = ("Device", "Device IP", "Port Alias", "VLAN", "Port Speed", "User MAC", "User IP",
             *_METRICS)
    values = (f"{port.name}&nbsp;&nbsp(RecNo: {port.device})", port.address, port.alias,
              port.shown_vlan, "100000000", mac, user.address if user else "",
              *port.full)
    popup = "".join(_POPUP_ROW.format(word=word, value=value) for word, value in zip(words, values))
    return _PORT.format(place=place, parity=_parity(place), port=port, popup=popup,
                        link=port_link(port, action),
                        top=178 + 18 * place) + _CELLS.format(cells=port.cells)
