// Drives a real browser over the 45-day charts of disks and memories of a running site that has
// built its pages from the demonstration data and the words of the shipped Language.ini.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  address,
  bandTitle,
  dataRows,
  htmlOf,
  open,
  page,
  pointAway,
  reportBox,
  shoot,
  table,
} from './browser.mjs';
import { bandBlocks, chart, checkChartPage, textsOf } from './chart_checks.mjs';
import { chartsIn, diskCharts, memoryCharts, storageSummaryCharts } from './chart_html.mjs';
import { classes, diskListName, selectedOrder } from './disk_classes.mjs';
import { heads } from './disk_tables.mjs';
import { leave, rowTexts } from './search_pages.mjs';

const summary = 'hist45d-disk-mem-summary.htm';
const total = heads.indexOf('Total');
const used = heads.indexOf('Used');

// The row of a storage in the list that the browser shows, counted from 0.
async function rowOf(device, storage) {
  const row = (await rowTexts()).findIndex((cells) => cells[0] === device && cells[1] === storage);
  assert.notEqual(row, -1, `${device} ${storage} is listed`);
  return row;
}

// Opens a list and clicks the device of a storage; the name of the page that opens.
async function openCharts(list, device, storage) {
  await open(list);
  const row = await rowOf(device, storage);
  await leave(() => page.locator(`${dataRows} >> nth=${row} >> a`).click());
  return new URL(page.url()).pathname.slice(1);
}

// Lists, storages of theirs, and the word for each in a URL, without the colons and slashes
// that a browser would take for parts of an address.
const examples = [
  ['windows', 'usedpercent-desc', 'win-mail', 'M:', 'M_'],
  ['windows', 'usedpercent-desc', 'win-Zürich', 'C:', 'C_'],
  ['unix', 'totalbytes-asc', 'ux-proxy', '/', '_'],
  ['unix', 'usedpercent-desc', 'ux-web-2', '/var/log', '_var_log'],
  ['physical', 'usedpercent-desc', 'ux-db', 'Physical', 'mem'],
  ['virtual', 'usedpercent-desc', 'win-sql-1', 'Virtual', 'mem'],
];
const shots = new Map([
  ['win-mail', 'disk_chart.png'],
  ['ux-db', 'memory_charts.png'],
]);

for (const [kind, order, device, storage, word] of examples) {
  test(`${device} ${storage} of a list leads to its charts under that list`, async () => {
    const list = diskListName(kind, order);
    const charts = word === 'mem' ? memoryCharts : diskCharts;
    await open(list);
    const shown = await page.locator(table).innerText();
    const title = await page.locator(bandTitle).innerText();

    const opened = await openCharts(list, device, storage);
    assert.match(opened, new RegExp(`^histdisk45-\\d+-${word}-${list}$`));

    assert.equal(await page.locator(table).innerText(), shown);
    assert.equal(await page.locator(reportBox).inputValue(), diskListName(kind, selectedOrder));
    assert.deepEqual(await page.locator(bandTitle).allInnerTexts(), [
      title,
      ...charts.map((each) => each.title),
    ]);
    const named = word === 'mem' ? 'Memory' : storage;
    assert.deepEqual(
      textsOf(await bandBlocks(0)),
      charts.map(() => ['Device:', device, 'Storage:', named]),
    );
    assert.equal(await page.locator(chart).count(), charts.length);
    const listBox = await page.locator(table).boundingBox();
    const chartBox = await page.locator(chart).first().boundingBox();
    assert.ok(chartBox.y > listBox.y + listBox.height, 'the charts stand below the list');
    await pointAway();
    if (shots.has(device)) await shoot(shots.get(device));
  });
}

for (const kind of classes) {
  test(`all devices of the ${kind.name} list have their charts, up to yesterday`, async () => {
    await open(diskListName(kind.name, selectedOrder));
    const rows = await rowTexts();
    const links = await page
      .locator(`${dataRows} a`)
      .evaluateAll((found) => found.map((a) => a.getAttribute('href')));
    assert.equal(links.length, 10);
    for (const [index, link] of links.entries()) {
      const said = chartsIn(await htmlOf(link));
      assert.equal(said.length, kind.isMemory ? memoryCharts.length : diskCharts.length, link);
      const [totalLine, usedLine] = said[kind.name === 'virtual' ? 1 : 0].at(-1).figures;
      assert.equal(totalLine, `Total: ${rows[index][total]}`, link);
      assert.ok(usedLine.startsWith(`Used: ${rows[index][used]} (`), `${link}: ${usedLine}`);
    }
  });
}

test('a disk that was just built in has dashes for the days before', async () => {
  const list = diskListName('windows', 'usedpercent-asc');
  const [charted] = chartsIn(await htmlOf(await openCharts(list, 'win-sql-2', 'T:')));
  const known = charted.map(({ figures }) => figures[0] !== 'Total: -');
  assert.equal(known.at(-1), true);
  assert.equal(known[0], false);
  assert.deepEqual(known.slice(0, 36), Array(36).fill(false));
});

test('the selector leads to the summary of disks and memories', async () => {
  await open('');
  await leave(() => page.locator(reportBox).selectOption(summary));
  assert.equal(page.url(), address(`select?report=${summary}`));
  assert.equal(await page.locator(reportBox).inputValue(), summary);
  const titles = storageSummaryCharts.map(({ title }) => title);
  assert.deepEqual(await page.locator(bandTitle).allInnerTexts(), titles);
  assert.deepEqual(
    textsOf(await bandBlocks(0)),
    titles.map((title) => ['Report:', `${title} 45 Days`, '', '']),
  );
  assert.equal(await page.locator(chart).count(), storageSummaryCharts.length);
  assert.equal(await page.locator(table).count(), 0);
  await pointAway();
  await shoot('disk_summary.png');
});

test('the summary counts the storages of each kind that were imported', async () => {
  const said = chartsIn(await htmlOf(summary));
  assert.deepEqual(
    said.map((charted) => charted.at(-1).figures[2]),
    classes.map(({ count }) => `Storages: ${count}`),
  );
});

const openUnixDisk = () =>
  openCharts(diskListName('unix', 'usedpercent-desc'), 'ux-web-2', '/var/log');
const openMemory = () =>
  openCharts(diskListName('physical', 'usedpercent-desc'), 'ux-db', 'Physical');
async function openSummary() {
  await open(summary);
  return summary;
}

checkChartPage({ name: 'disk', charts: diskCharts, open: openUnixDisk });
checkChartPage({ name: 'memory', charts: memoryCharts, open: openMemory });
checkChartPage({ name: 'disk summary', charts: storageSummaryCharts, open: openSummary });
