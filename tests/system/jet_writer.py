"""Jet 4 files with tables of the tests' own. A real file gives the head and the catalog; the tables
are put behind its pages. What only their own programs need is left out: indexes, rights, and the
list of pages in use."""
import struct

from jet_values import Column, definition, row_bytes
from programs import PROGRAMS

PAGE = 4096
SAMPLES = PROGRAMS.parent / "jet_samples"
PEOPLE = SAMPLES / "node-adodb/examples/node-adodb.mdb"  # with one table, Users, of three rows

_DATA, _DEFINITION, _MAP = 1, 2, 5  # kinds of pages
_MOVED, _DELETED, _ELSEWHERE = 0x8000, 0xc000, 0x4000  # marks of rows
_CATALOG_DEFINITION, _CATALOG_MAP = 2, 6  # pages
_CATALOG_PAGES = 6  # set aside: the catalog's map reaches no page behind the 512th
_PAGES_OF_SHORT_MAP = 512
_PAGES_OF_MAP = (PAGE - 4) * 8
_ROW_COUNT = 16  # its place in a definition
_OWN_PLACE = 200  # bytes of a long value that stay in their row
_KEY, _PASSWORD = 0x3e, 0x42  # places in the head

_CATALOG = [Column(name, kind) for name, kind in (
    ("Id", "long"), ("ParentId", "long"), ("Name", "text"), ("Type", "integer"),
    ("DateCreate", "date"), ("DateUpdate", "date"), ("Owner", "binary"), ("Flags", "long"),
    ("Database", "memo"), ("Connect", "memo"), ("ForeignName", "text"), ("RmtInfoShort", "binary"),
    ("RmtInfoLong", "picture"), ("Lv", "picture"), ("LvProp", "picture"), ("LvModule", "picture"),
    ("LvExtra", "picture"))]
_TABLES_PARENT, _TABLE_TYPE = 251658241, 1


class JetWriter:
    def __init__(self, base=PEOPLE):
        data = base.read_bytes()
        self._pages = [bytearray(data[at:at + PAGE]) for at in range(0, len(data), PAGE)]
        self._catalog_pages = [self._add_page(bytes(PAGE)) for _ in range(_CATALOG_PAGES)]
        self._catalog_rows = []
        self.places = {}  # the numbers of its pages by the name of a table

    def add_table(self, name, columns, rows, times=1, deleted=(), moved=(),
                  columns_at_first=None, foreign=(), counted=None):
        """The rows stand in the file so many times. Those whose places are given are left there
        as deleted ones, or have grown and been moved to another page. The columns that the table
        had at first are those that the rows know, where others were added later. Its map also names
        foreign pages, and it counts another number of rows than it has, where these are given."""
        first = len(self._pages)
        number = self._add_page(bytes(PAGE))
        map_page = self._add_page(bytes(PAGE))
        packed = [row_bytes(columns[:columns_at_first], row, self._store_long) for row in rows]
        data_pages = self._add_rows(number, packed, times, set(deleted), set(moved))
        self._pages[map_page] = _data_page(0, [(0, self._map_of(sorted([*foreign, *data_pages]))), (0, bytes(69))])
        self._pages[number] = _table_definition(
            columns, (len(packed) - len(set(deleted))) * times if counted is None else counted,
            map_page)
        self._catalog_rows.append(row_bytes(_CATALOG, [
            number, _TABLES_PARENT, name, _TABLE_TYPE, "2003-04-05 06:07:08",
            "2003-04-05 06:07:08", None, 0, *[None] * 9], self._store_long))
        self.places[name] = range(first, len(self._pages))

    def data(self):
        """The whole file."""
        pages = list(self._pages)
        catalog = _fill(_CATALOG_DEFINITION, [(0, row) for row in self._catalog_rows])
        if len(catalog) > _CATALOG_PAGES:
            raise ValueError("more tables than there is room for")
        pages[_CATALOG_MAP] = bytearray(pages[_CATALOG_MAP])
        for number, page in zip(self._catalog_pages, catalog):
            pages[number] = page
            _set_bit(pages[_CATALOG_MAP], number)
        shape = bytearray(pages[_CATALOG_DEFINITION])
        count, = struct.unpack_from("<I", shape, _ROW_COUNT)
        struct.pack_into("<I", shape, _ROW_COUNT, count + len(self._catalog_rows))
        pages[_CATALOG_DEFINITION] = shape
        return b"".join(pages)

    def write(self, path):
        path.write_bytes(self.data())
        return path

    def _add_page(self, page):
        self._pages.append(page)
        return len(self._pages) - 1

    def _add_rows(self, definition_page, packed, times, deleted, moved):
        """The numbers of their pages. What has moved has a page of its own, behind the others."""
        moved = sorted(moved)

        def pages_from(first_moved):
            pointers = {place: (first_moved + order) << 8 for order, place in enumerate(moved)}
            return _fill(definition_page, [
                (_ELSEWHERE, struct.pack("<I", pointers[place])) if place in pointers
                else (_DELETED if place in deleted else 0, row)
                for place, row in enumerate(packed)])

        pages = pages_from(len(self._pages) + times * len(pages_from(0))) * times
        pages += [_data_page(definition_page, [(_MOVED, packed[place])]) for place in moved]
        return [self._add_page(page) for page in pages]

    def _map_of(self, numbers):
        if not numbers or numbers[-1] < numbers[0] + _PAGES_OF_SHORT_MAP:
            first = numbers[0] // 8 * 8 if numbers else 0
            bits = bytearray(64)
            for number in numbers:
                bits[(number - first) // 8] |= 1 << (number - first) % 8
            return struct.pack("<BI", 0, first) + bits
        return struct.pack("<B", 1) + b"".join(
            struct.pack("<I", self._add_map_page(numbers, part)) for part in range(17))

    def _add_map_page(self, numbers, part):
        first = part * _PAGES_OF_MAP
        inside = [number - first for number in numbers if 0 <= number - first < _PAGES_OF_MAP]
        if not inside:
            return 0
        page = bytearray(struct.pack("<BBH", _MAP, 1, 0)).ljust(PAGE, b"\0")
        for number in inside:
            page[4 + number // 8] |= 1 << number % 8
        return self._add_page(page)

    def _store_long(self, data):
        """In the row, on a page, or on a chain of pages."""
        if len(data) <= _OWN_PLACE:
            return struct.pack("<III", len(data) | 0x80 << 24, 0, 0) + data
        room = PAGE - 100
        if len(data) <= room:
            return struct.pack("<III", len(data) | 0x40 << 24, self._add_long_page(data), 0)
        pointer = 0
        for start in reversed(range(0, len(data), room)):
            piece = struct.pack("<I", pointer) + data[start:start + room]
            pointer = self._add_long_page(piece)
        return struct.pack("<III", len(data), pointer, 0)

    def _add_long_page(self, data):
        number = self._add_page(_data_page(int.from_bytes(b"LVAL", "little"), [(0, data)]))
        return number << 8  # and row 0


def encrypted(data, key):
    """The same file with all of its pages but the head encrypted."""
    pages = [bytearray(data[:PAGE])]
    _mask(pages[0], _KEY, struct.pack("<I", key))
    for at in range(PAGE, len(data), PAGE):
        pages.append(_rc4(struct.pack("<I", key ^ at // PAGE), data[at:at + PAGE]))
    return b"".join(pages)


def with_password(data, password):
    """The same file with a password in its head, which alone hides nothing."""
    head = bytearray(data[:PAGE])
    _mask(head, _PASSWORD, password.encode("utf-16-le"))
    return head + data[PAGE:]


def _mask(page, place, data):
    """The head is kept under a mask, which stays under what is laid over it."""
    for offset, byte in enumerate(data):
        page[place + offset] ^= byte


def _rc4(key, data):
    state = list(range(256))
    other = 0
    for place in range(256):
        other = (other + state[place] + key[place % len(key)]) % 256
        state[place], state[other] = state[other], state[place]
    out = bytearray()
    place = other = 0
    for byte in data:
        place = (place + 1) % 256
        other = (other + state[place]) % 256
        state[place], state[other] = state[other], state[place]
        out.append(byte ^ state[(state[place] + state[other]) % 256])
    return bytes(out)


def _fill(definition_page, rows):
    """As many pages as the rows take."""
    pages, piece, room = [], [], PAGE - 14
    for mark, row in rows:
        if room < len(row) + 2:
            pages.append(_data_page(definition_page, piece))
            piece, room = [], PAGE - 14
        piece.append((mark, row))
        room -= len(row) + 2
    return pages + [_data_page(definition_page, piece)] if piece else pages


def _data_page(owner, rows):
    """Rows from its end, each behind its mark, and their places from its start."""
    places, end, tail = [], PAGE, b""
    for mark, row in rows:
        end -= len(row)
        places.append(end | mark)
        tail = row + tail
    free = end - 14 - 2 * len(rows)
    head = struct.pack("<BBHIIH", _DATA, 1, free, owner, 0, len(rows))
    return (head + struct.pack(f"<{len(rows)}H", *places)).ljust(end, b"\0") + tail


def _table_definition(columns, count, map_page):
    variable = sum(not column.shape.is_fixed for column in columns)
    body = b"".join(_definitions(columns))
    for column in columns:
        name = column.name.encode("utf-16-le")
        body += struct.pack("<H", len(name)) + name
    body += b"\xff\xff"
    head = struct.pack(
        "<IIIIIIIIBHHHIIII", 63 + len(body), 0x659, count, 0, 1, 0, 0, 0, 0x4e, len(columns),
        variable, len(columns), 0, 0, map_page << 8, map_page << 8 | 1)
    page = struct.pack("<BBHI", _DEFINITION, 1, PAGE - 63 - len(body), 0) + head + body
    if len(page) > PAGE:
        raise ValueError("a table of more than a page of columns")
    return page.ljust(PAGE, b"\0")


def _definitions(columns):
    fixed_offset = variable_number = 0
    for number, column in enumerate(columns):
        yield definition(column, number, fixed_offset, variable_number)
        fixed_offset += column.shape.size
        variable_number += not column.shape.is_fixed


def _set_bit(map_page, number):
    """In the first map of a page of maps, which begins with page 0 of the file."""
    start, = struct.unpack_from("<H", map_page, 14)
    map_page[(start & 0x1fff) + 5 + number // 8] |= 1 << number % 8
