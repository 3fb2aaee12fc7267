"""Values and rows as a Jet 4 file holds them."""
import struct
from datetime import date, datetime
from itertools import groupby
from typing import NamedTuple

_ZERO_DATE = datetime(1899, 12, 30)
_SECONDS_OF_DAY = 86400
_CURRENCY_STEPS = 10000
_DECIMALS = 4  # behind the point of a decimal number
_UNICODE_MARK = b"\xff\xfe"  # of a text that leaves out the empty halves of its characters


class Kind(NamedTuple):
    """What a file knows of the type of a column. `size` is 0 where it differs by row."""
    code: int
    size: int = 0

    @property
    def is_fixed(self):
        return self.size > 0


class Column(NamedTuple):
    name: str
    kind: str

    @property
    def shape(self):
        return KINDS[self.kind]


KINDS = {
    "yes/no": Kind(0x01, 1), "byte": Kind(0x02, 1), "integer": Kind(0x03, 2),
    "long": Kind(0x04, 4), "currency": Kind(0x05, 8), "single": Kind(0x06, 4),
    "double": Kind(0x07, 8), "date": Kind(0x08, 8), "binary": Kind(0x09), "text": Kind(0x0a),
    "wide text": Kind(0x0a), "picture": Kind(0x0b), "memo": Kind(0x0c), "decimal": Kind(0x10, 17),
}
LONG_KINDS = ("memo", "picture")  # which may lie on pages of their own


def days_of(moment):
    """Days since 1899-12-30. The fraction is the time of the day, also in front of that date."""
    if isinstance(moment, str):
        moment = datetime.fromisoformat(moment)
    days = (moment.date() - _ZERO_DATE.date()).days
    midnight = datetime.combine(moment.date(), datetime.min.time())
    fraction = (moment - midnight).total_seconds() / _SECONDS_OF_DAY
    return days - fraction if days < 0 else days + fraction


def text_bytes(text):
    """Without the empty halves where that is shorter. A zero turns the leaving out off and on."""
    wide = text.encode("utf-16-le")
    packed = _UNICODE_MARK
    for is_latin, run in groupby(text, lambda letter: ord(letter) < 256):
        piece = "".join(run)
        packed += piece.encode("latin-1") if is_latin else b"\0%b\0" % piece.encode("utf-16-le")
    can_be_packed = all(ord(letter) & 0xff for letter in text)
    return packed if can_be_packed and len(packed) < len(wide) else wide


def _decimal_bytes(number):
    steps = round(abs(number) * 10 ** _DECIMALS)
    words = [steps >> 32 * place & 0xffffffff for place in (3, 2, 1, 0)]
    return struct.pack("<B4I", 0x80 if number < 0 else 0, *words)


_PACK = {
    "yes/no": lambda value: b"\0",  # the bit among the nulls tells it
    "byte": lambda value: struct.pack("<B", value),
    "integer": lambda value: struct.pack("<h", value),
    "long": lambda value: struct.pack("<i", value),
    "currency": lambda value: struct.pack("<q", round(value * _CURRENCY_STEPS)),
    "single": lambda value: struct.pack("<f", value),
    "double": lambda value: struct.pack("<d", value),
    "date": lambda value: struct.pack(
        "<d", days_of(value) if isinstance(value, (str, date)) else value),
    "decimal": _decimal_bytes,
    "binary": bytes,
    "picture": bytes,
    "text": text_bytes,
    "memo": text_bytes,
    "wide text": lambda value: value.encode("utf-16-le"),
}


def value_bytes(column, value):
    return _PACK[column.kind](value)


def definition(column, number, fixed_offset, variable_number):
    """The column among those of its table."""
    shape = column.shape
    if column.kind == "decimal":
        kind_of_text = struct.pack("<BB", 18, _DECIMALS)
    else:
        kind_of_text = struct.pack("<H", 0x0409)
    return (struct.pack("<BIHHH", shape.code, 0x659, number, variable_number, number)
            + kind_of_text
            + struct.pack("<HBBIHH", 0, 3 if shape.is_fixed else 2, int(column.kind == "text"), 0,
                          fixed_offset, shape.size or (0 if column.kind in LONG_KINDS else 510)))


def row_bytes(columns, values, store_long):
    """`store_long` finds a place for a long value, and gives the bytes that lead there."""
    fixed, variable, ends, present = b"", b"", [], 0
    for number, (column, value) in enumerate(zip(columns, values, strict=True)):
        is_present = bool(value) if column.kind == "yes/no" else value is not None
        present |= is_present << number
        data = value_bytes(column, value) if is_present else b""
        if column.shape.is_fixed:
            fixed += data.ljust(column.shape.size, b"\0")
        else:
            ends.append(len(variable))
            is_long = is_present and column.kind in LONG_KINDS
            variable += store_long(data) if is_long else data
    row = struct.pack("<H", len(columns)) + fixed
    if ends:
        starts = [len(row) + end for end in [*ends, len(variable)]]
        row += variable + struct.pack(f"<{len(starts) + 1}H", *reversed(starts), len(ends))
    return row + present.to_bytes((len(columns) + 7) // 8, "little")
