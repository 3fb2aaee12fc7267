// Drives a real browser over the 45-day charts of a running site that holds the
// demonstration data and the words of the shipped Language.ini.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  address,
  bandTitle,
  bytesOf,
  dataRows,
  htmlOf,
  listName,
  open,
  page,
  pointAway,
  popupLink,
  portKinds,
  reportBox,
  shoot,
  table,
  visibility,
} from './browser.mjs';
import {
  ageAt,
  calendarBefore,
  chartsIn,
  days,
  missedDays,
  portCharts,
  positionAt,
  summaryCharts,
} from './chart_html.mjs';

const chart = 'table.chartData';
const dayRow = 'table.chartDayNr';
const summaryName = (kind) => `hist45d-switch-${kind.name}-port-summary.htm`;
const barColours = ['rgb(95, 115, 131)', 'rgb(37, 84, 123)']; // of the Blue theme
const errorsColumn = 6;
const volumeChart = 0;
const errorsChart = 2;
const portsChart = 3;

// The list by input errors, whose first port works on weekdays above all.
const list = listName('access', 'inerrors');

// Opens a list and clicks its first device; the name of the page that opens.
async function openCharts(listed = list) {
  await open(listed);
  const device = page.locator(`${dataRows} >> nth=0 >> td >> nth=0 >> a`);
  await Promise.all([page.waitForURL((url) => url.pathname.includes('/hist45-')), device.click()]);
  return new URL(page.url()).pathname.slice(1);
}

// Pages with charts, by the way in which a visitor reaches them.
const chartPages = [
  { name: 'port', charts: portCharts, open: () => openCharts() },
  ...portKinds.map((kind) => ({
    name: `${kind.name} summary`,
    charts: summaryCharts,
    async open() {
      await open(summaryName(kind));
      return summaryName(kind);
    },
  })),
];

// The site's own day, which is not that of this machine everywhere: the newest on which the
// demonstration saw an address.
async function siteToday() {
  const seen = [...(await htmlOf(list)).matchAll(/LastSeen: (\d{4}-\d\d-\d\d)/g)];
  assert.ok(seen.length > 0);
  return seen.map(([, date]) => date).sort().at(-1);
}

// The cells of a block of each chart's band, 0 at its left and 2 at its right.
const bandBlocks = (block) =>
  page.locator('table.repHeader:has(.chartDataLeft)').evaluateAll(
    (bands, column) =>
      bands.map((band) =>
        [...band.rows[0].cells[column].querySelectorAll('td')].map((cell) => ({
          text: cell.innerText.trim(),
          colour: getComputedStyle(cell.parentElement).backgroundColor,
        })),
      ),
    block,
  );
const textsOf = (blocks) => blocks.map((cells) => cells.map(({ text }) => text));

// Boxes of the bars, with their colours, of the pieces of the axis under them and of the day
// numbers, by chart.
const drawnCharts = () =>
  page.evaluate(
    ([charts, rows]) => {
      const boxes = (element, selector) =>
        [...element.querySelectorAll(selector)].map((found) => ({
          ...found.getBoundingClientRect().toJSON(),
          colour: getComputedStyle(found.parentElement).backgroundColor,
        }));
      const dayRows = [...document.querySelectorAll(rows)];
      return [...document.querySelectorAll(charts)].map((chart, index) => ({
        bars: boxes(chart, 'tr.chartDataLeft td, tr.chartDataRight td'),
        axes: boxes(chart, 'tr.chartDataXaxis td'),
        cells: boxes(dayRows[index], 'td:has(a), th:has(a)'),
      }));
    },
    [chart, dayRow],
  );

// "In Errors: 1 234 per 24h" is 1234.
const wholeNumber = (line) => Number(/: ([\d ]*)/.exec(line)[1].replaceAll(' ', ''));

for (const kind of portKinds) {
  test(`a device of the ${kind.name} list leads to its charts under that list`, async () => {
    const listed = listName(kind.name, 'inerrors');
    await open(listed);
    const shown = await page.locator(table).innerText();
    const [device, port] = await page.locator(`${dataRows} >> nth=0 >> td`).allInnerTexts();

    assert.match(await openCharts(listed), new RegExp(`^hist45-\\d+-\\d+-${listed}$`));

    assert.equal(await page.locator(table).innerText(), shown);
    assert.equal(await page.locator(reportBox).inputValue(), listed);
    assert.deepEqual(await page.locator(bandTitle).allInnerTexts(), [
      'Top 10 In Errors',
      ...portCharts.map(({ title }) => title),
    ]);
    assert.deepEqual(
      textsOf(await bandBlocks(0)),
      portCharts.map(() => ['Device:', device, 'Port:', port]),
    );
    const bottom = (box) => box.y + box.height;
    const listBox = await page.locator(table).boundingBox();
    const chartBox = await page.locator(chart).first().boundingBox();
    assert.ok(chartBox.y > bottom(listBox), 'the charts stand below the list');
    await pointAway();
    if (kind.name === 'access') await shoot('port_charts.png');
  });
}

test('the charts of a port have a page of their own, without a list', async () => {
  const [, port] = /^(hist45-\d+-\d+)-/.exec(await openCharts());
  await open(`${port}.htm`);
  assert.equal(await page.locator(chart).count(), portCharts.length);
  assert.equal(await page.locator(table).count(), 0);
  assert.equal(await page.locator(reportBox).count(), 0);
});

for (const kind of portKinds) {
  test(`the selector leads to the summary of the ${kind.name} ports`, async () => {
    const name = summaryName(kind);
    await open('');
    await Promise.all([
      page.waitForURL(address(`select?report=${name}`)),
      page.locator(reportBox).selectOption(name),
    ]);
    assert.equal(await page.locator(reportBox).inputValue(), name);
    assert.deepEqual(
      await page.locator(bandTitle).allInnerTexts(),
      summaryCharts.map(({ title }) => title),
    );
    assert.deepEqual(
      textsOf(await bandBlocks(0)),
      summaryCharts.map(() => ['Report:', kind.summary, '', '']),
    );
    assert.equal(await page.locator(chart).count(), summaryCharts.length);
    assert.equal(await page.locator(table).count(), 0);
    if (kind.name === 'access') await shoot('summary.png');
  });
}

for (const { name, charts, open: openPage } of chartPages) {
  test(`pointing at a day of the ${name} charts shows its popup, leaving hides it`, async () => {
    const said = chartsIn(await htmlOf(await openPage()));
    assert.equal(said.length, charts.length);
    for (const [index, { firstId, popupPattern }] of charts.entries()) {
      for (const position of [1, 23, positionAt(missedDays[0]), days - 1]) {
        const id = `c${firstId + position}`;
        assert.equal(await visibility(id), 'hidden');
        await popupLink(id).hover();
        assert.equal(await visibility(id), 'visible');
        const shown = await page.locator(`#${id}`).innerText();
        assert.equal(shown, said[index][position - 1].popup);
        assert.match(shown, popupPattern);
        await pointAway();
        assert.equal(await visibility(id), 'hidden');
      }
    }
  });

  test(`the days of the ${name} charts run up to yesterday, one after the other`, async () => {
    const calendar = calendarBefore(await siteToday());
    const said = chartsIn(await htmlOf(await openPage()));
    for (const [index, { firstId }] of charts.entries()) {
      assert.deepEqual(
        said[index].map(({ id, title, number }) => ({ id, title, number })),
        calendar.map(({ title, number }, day) => ({ id: `c${firstId + day + 1}`, title, number })),
      );
    }
  });

  test(`Sundays of the ${name} charts are heads on another colour`, async () => {
    const calendar = calendarBefore(await siteToday());
    await openPage();
    const rows = await page.locator(dayRow).evaluateAll((found) =>
      found.map((row) =>
        [...row.rows[0].cells]
          .filter((cell) => cell.querySelector('a'))
          .map((cell) => `${cell.tagName} ${getComputedStyle(cell).backgroundColor}`),
      ),
    );
    const expected = calendar.map(({ weekday }) =>
      weekday === 0 ? 'TH rgb(178, 34, 34)' : 'TD rgba(0, 0, 0, 0)',
    );
    assert.deepEqual(rows, charts.map(() => expected));
    assert.equal(
      await page.locator(dayRow).first().evaluate((row) => getComputedStyle(row).backgroundColor),
      'rgb(0, 51, 102)',
    );
  });

  test(`bars of the ${name} charts stand on the axis, as high as the page says`, async () => {
    const said = chartsIn(await htmlOf(await openPage()));
    const drawn = await drawnCharts();
    assert.equal(drawn.length, charts.length);
    for (const [index, { bars, axes }] of drawn.entries()) {
      const heights = said[index].flatMap((day) => day.bars);
      assert.equal(bars.length, 2 * days);
      assert.deepEqual(bars.map((bar) => Math.round(bar.height)), heights);
      assert.ok(heights.every((height) => height >= 1));
      assert.ok(Math.max(...heights) >= 50, 'the axis fits the figures');
      const [axis] = axes;
      for (const [place, bar] of bars.entries()) {
        assert.ok(Math.abs(bar.bottom - axis.top) < 0.5, `bar ${place} stands on the axis`);
        assert.ok(Math.abs(axes[place].top - axis.top) < 0.5, `the axis is straight at ${place}`);
        assert.ok(Math.abs(axes[place].height - 1) < 0.5, `the axis is thin at ${place}`);
      }
    }
  });

  test(`the two bars of a day of the ${name} charts stand above its number`, async () => {
    await openPage();
    for (const { bars, cells } of await drawnCharts()) {
      assert.equal(cells.length, days);
      for (const [day, cell] of cells.entries()) {
        const [left, right] = bars.slice(2 * day, 2 * day + 2);
        assert.ok(Math.abs(left.left - cell.left) < 4, `left bar of day ${day + 1}`);
        assert.ok(Math.abs(right.right - cell.right) < 4, `right bar of day ${day + 1}`);
        assert.ok(left.right <= right.left + 0.5);
        assert.ok(left.bottom <= cell.top);
      }
    }
  });

  test(`the legends of the ${name} charts have the colours of the bars`, async () => {
    await openPage();
    const legends = await bandBlocks(2);
    assert.deepEqual(textsOf(legends), charts.map(({ words }) => words));
    for (const [index, { bars }] of (await drawnCharts()).entries()) {
      assert.deepEqual(legends[index].map(({ colour }) => colour), barColours);
      for (const [place, { colour }] of bars.entries()) assert.equal(colour, barColours[place % 2]);
    }
  });

  test(`a popup of the ${name} charts opens at its day`, async () => {
    await openPage();
    for (const { firstId } of charts) {
      for (const position of [1, days]) {
        const id = `c${firstId + position}`;
        await popupLink(id).hover();
        const day = await popupLink(id).boundingBox();
        const popup = await page.locator(`#${id}`).boundingBox();
        assert.ok(Math.abs(popup.y - day.y) < 5, `${id} lies at the row of days`);
        assert.ok(popup.x >= day.x && popup.x - day.x < 16, `${id} opens beside its day`);
      }
    }
  });

  test(`days without an import are dashes on bars of a pixel in the ${name} charts`, async () => {
    const said = chartsIn(await htmlOf(await openPage()));
    for (const chartDays of [said[volumeChart], said[errorsChart]]) {
      for (const [index, { figures, bars, title }] of chartDays.entries()) {
        const age = ageAt(index + 1);
        const dashes = figures.every((figure) => figure.endsWith(': -'));
        if (missedDays.includes(age)) assert.deepEqual(bars, [1, 1], title);
        if (age > 1) assert.equal(dashes, missedDays.includes(age), title);
      }
    }
  });

  test(`higher bars of errors mean more errors in the ${name} charts`, async () => {
    const said = chartsIn(await htmlOf(await openPage()));
    const counted = said[errorsChart].flatMap(({ figures, bars }) =>
      ['In', 'Out'].flatMap((way, side) =>
        figures
          .filter((line) => line.startsWith(`${way} Errors: `) && !line.endsWith(': -'))
          .map((line) => ({ errors: wholeNumber(line), height: bars[side] })),
      ),
    );
    assert.ok(counted.length >= 2 * (days - missedDays.length - 1));
    counted.sort((a, b) => a.errors - b.errors);
    const heights = counted.map(({ height }) => height);
    assert.deepEqual(heights, [...heights].sort((a, b) => a - b));
  });

  test(`no two elements of the ${name} page have one id`, async () => {
    await openPage();
    const ids = await page.locator('[id]').evaluateAll((found) => found.map(({ id }) => id));
    assert.ok(ids.length > charts.length * days);
    assert.deepEqual(ids, [...new Set(ids)]);
  });

  test(`the ${name} page reached twice has the same bytes`, async () => {
    const pageName = await openPage();
    const first = await bytesOf(pageName);
    assert.ok(first.includes("id='c145'"));
    assert.ok(first.equals(await bytesOf(pageName)));
  });
}

test('a port whose users are at work carries less on weekends', async () => {
  const calendar = calendarBefore(await siteToday());
  const said = chartsIn(await htmlOf(await openCharts()));
  const megabytes = (wanted) =>
    said[volumeChart]
      .filter((_, index) => [0, 6].includes(calendar[index].weekday) === wanted)
      .map(({ figures }) => /^In Volume: (\d[\d ]*) ([MG])/.exec(figures[0]))
      .filter((found) => found)
      .map(([, number, unit]) => Number(number.replaceAll(' ', '')) * (unit === 'G' ? 1000 : 1));
  const weekends = megabytes(true);
  const weekdays = megabytes(false);
  assert.ok(weekends.length >= 8 && weekdays.length >= 25);
  assert.ok(Math.max(...weekends) < Math.min(...weekdays));
});

test('yesterday has the errors of the list, as soon as they are imported', async () => {
  const said = chartsIn(await htmlOf(await openCharts()));
  const listed = await page.locator(`${dataRows} >> nth=0 >> td`).allInnerTexts();
  assert.match(listed[errorsColumn], /^\d[\d ]*$/);
  const [yesterday] = said[errorsChart].at(-1).figures;
  if (yesterday !== 'In Errors: -') {
    assert.equal(yesterday, `In Errors: ${listed[errorsColumn]} per 24h`);
  }
});

test('the summaries count all ports, and tell the share that is in traffic', async () => {
  let ports = 0;
  for (const kind of portKinds) {
    const said = chartsIn(await htmlOf(summaryName(kind)));
    const { figures } = said[portsChart][days - 2]; // the newest day that is surely imported
    const all = wholeNumber(figures[0]);
    const [, inTraffic, share] = /^Ports in Traffic: (\d+) \((\d+)%\)$/.exec(figures[1]);
    assert.ok(inTraffic > 0 && inTraffic < all);
    assert.equal(Number(share), Math.round((100 * inTraffic) / all));
    ports += all;
  }
  assert.equal(ports, 400);
});
