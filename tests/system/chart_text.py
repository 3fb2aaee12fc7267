"""The charts of a page, read back from its text. What is not of their form fails the test."""
import re
from dataclasses import dataclass

DAYS = 45
NO_DATA = ("-", "1")  # text and height of the bar

_BAND = """\
<table width='790px' class='repHeader'>
  <tr>
    <td width='240px'><table class='repHeader2'>
      <tr>
        <td width='50px'>{name1}</td>
        <td width='190px'>{text1}</td>
      </tr>
      <tr>
        <td width='50px'>{name2}</td>
        <td width='200px'>{text2}</td>
      </tr>
    </table></td>
    <td width='310px'>{title}</td>
    <td width='240px'><table class='repHeader2'>
      <tr class='chartDataLeft'>
        <td width='240px' style='text-align:center'>{left}</td>
      </tr>
      <tr class='chartDataRight'>
        <td width='240px' style='text-align:center'>{right}</td>
      </tr>
    </table></td>
  </tr>
</table>
"""
_AXIS = """\
<table width='790px' class='chartData'>
<tr>
    <td><table width='55px' class='chartData2'>
      <tr><td height='7px'>{top} -</td></tr>
      <tr><td height='50px'>{half} -</td></tr>
      <tr><td height='43px'></td></tr>
    </table></td>
    <td><table width='1px' class='chartData2'>
      <tr class='chartDataYaxis'><td width='1px'>&nbsp</td></tr>
    </table></td>
"""
_BAR = """\
    <td><table width='8px' class='chartData2'>
      <tr class='chartDataBg'><td height='0px'></td></tr>
      <tr class='chartData{side}'><td height='{height}'></td></tr>
      <tr class='chartDataXaxis'><td height='1px'>&nbsp</td></tr>
    </table></td>
"""
_MIDDLE = """\
    <td><table width='10px'>
    </table></td>
  </tr>
</table>
<table width='790px' class='chartDayNr'>
  <tr>
    <td><table width='55px'></table></td>
"""
_DAY = """\
    <{tag}><table width='14px'><a href=# onMouseOver="popupShow('{over}')" href=# \
onMouseOut="popupHide('{out}')">{number}</a></table></{endtag}>
      <div id='{popup}' class='popupChart' style='left:{place}px'><b>{day}</b><br>{figures}</div>
"""
_END = """\
    <td><table width='9px'></table></td>
  </tr>
</table>
<br>
"""


def _pattern(template):
    escaped = re.escape(template.replace("\n", "\r\n"))
    return re.compile(re.sub(r"\\{(\w+)\\}", r"(?P<\1>[^\\r]*?)", escaped))


_BAND, _AXIS, _BAR, _MIDDLE, _DAY, _END = map(
    _pattern, (_BAND, _AXIS, _BAR, _MIDDLE, _DAY, _END))


@dataclass
class Chart:
    names: tuple    # the cells at the left: name and text, twice
    words: tuple    # title, legend of the left and of the right bars
    axis: tuple     # labels of the top and of the half
    bars: list      # heights of left and right, oldest day first
    days: list      # what stands below each

    def series(self, age):
        """The text in the popup of that day, and its two bars."""
        return self.days[-age].figures, self.bars[-age]


@dataclass
class Day:
    tag: str
    number: str
    popup: str
    place: int
    title: str
    figures: str


class _Reader:
    def __init__(self, text):
        self._text = text
        self._at = 0

    def is_at_end(self):
        return self._at == len(self._text)

    def take(self, pattern):
        match = pattern.match(self._text, self._at)
        if match is None:
            raise AssertionError(f"no chart goes on like this: {self._text[self._at:][:300]!r}")
        self._at = match.end()
        return match.groupdict()


def _read_bar(reader, side):
    bar = reader.take(_BAR)
    if bar["side"] != side:
        raise AssertionError(f"a bar of the other side: {bar}")
    return bar["height"]


def _read_day(reader):
    day = reader.take(_DAY)
    if not day["over"] == day["out"] == day["popup"] or day["tag"] != day["endtag"]:
        raise AssertionError(f"a day that is at odds with itself: {day}")
    return Day(day["tag"], day["number"], day["popup"], int(day["place"]), day["day"],
               day["figures"])


def _read_chart(reader):
    band, axis = reader.take(_BAND), reader.take(_AXIS)
    bars = [(_read_bar(reader, "Left"), _read_bar(reader, "Right")) for _ in range(DAYS)]
    reader.take(_MIDDLE)
    days = [_read_day(reader) for _ in range(DAYS)]
    reader.take(_END)
    return Chart(tuple(band[key] for key in ("name1", "text1", "name2", "text2")),
                 tuple(band[key] for key in ("title", "left", "right")),
                 (axis["top"], axis["half"]), bars, days)


def read_charts(data, charset):
    """The charts that these bytes are, and nothing else."""
    reader = _Reader(data.decode(charset))
    charts = []
    while not reader.is_at_end():
        charts.append(_read_chart(reader))
    return charts
