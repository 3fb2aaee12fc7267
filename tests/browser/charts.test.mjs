// Drives a real browser over the 45-day charts of a running site that holds the
// demonstration data and the words of the shipped Language.ini.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  address,
  bandTitle,
  dataRows,
  htmlOf,
  listName,
  open,
  page,
  pointAway,
  portKinds,
  reportBox,
  shoot,
  table,
} from './browser.mjs';
import { bandBlocks, chart, checkChartPage, siteToday, textsOf } from './chart_checks.mjs';
import {
  calendarBefore,
  chartsIn,
  days,
  missedDays,
  portCharts,
  summaryCharts,
} from './chart_html.mjs';

const summaryName = (kind) => `hist45d-switch-${kind.name}-port-summary.htm`;
const errorsColumn = 6;
const volumeChart = 0;
const errorsChart = 2;
const portsChart = 3;

// Some ports count no multicasts.
const wholeCharts = [volumeChart, errorsChart];

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
  { name: 'port', charts: portCharts, whole: wholeCharts, open: () => openCharts() },
  ...portKinds.map((kind) => ({
    name: `${kind.name} summary`,
    charts: summaryCharts,
    whole: wholeCharts,
    async open() {
      await open(summaryName(kind));
      return summaryName(kind);
    },
  })),
];

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

for (const chartPage of chartPages) {
  const { name, open: openPage } = chartPage;
  checkChartPage(chartPage);

  test(`higher bars of errors mean more errors in the ${name} charts`, async () => {
    const said = chartsIn(await htmlOf(await openPage()));
    const counted = said[errorsChart].flatMap(({ figures, bars }) =>
      ['In', 'Out'].flatMap((way, side) =>
        figures
          .filter((line) => line.startsWith(`${way} Errors: `) && !line.endsWith(': -'))
          .map((line) => ({ errors: wholeNumber(line), height: bars[side] })),
      ),
    );
    assert.ok(counted.length >= 2 * (days - missedDays.length));
    counted.sort((a, b) => a.errors - b.errors);
    const heights = counted.map(({ height }) => height);
    assert.deepEqual(heights, [...heights].sort((a, b) => a - b));
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

test('yesterday has the errors of the list', async () => {
  const said = chartsIn(await htmlOf(await openCharts()));
  const listed = await page.locator(`${dataRows} >> nth=0 >> td`).allInnerTexts();
  assert.match(listed[errorsColumn], /^\d[\d ]*$/);
  const [yesterday] = said[errorsChart].at(-1).figures;
  assert.equal(yesterday, `In Errors: ${listed[errorsColumn]} per 24h`);
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
