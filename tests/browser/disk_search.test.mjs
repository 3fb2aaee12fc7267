// Drives a real browser over the disk search of a running site that holds the demonstration data
// and the words of the shipped Language.ini.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import { bandTitle, dataRows, open, page, table } from './browser.mjs';
import { chart } from './chart_checks.mjs';
import { diskCharts, memoryCharts } from './chart_html.mjs';
import { figure, heads, orders } from './disk_tables.mjs';
import {
  assertShowsResult,
  choose,
  clickSearch,
  diskForm,
  field,
  fieldTexts,
  fillIn,
  leave,
  orderBox,
  rowTexts,
  search,
  shownLine,
  storages,
} from './search_pages.mjs';

const defaultOrder = 'usedpercent-desc';

const orderOf = () => page.locator(orderBox).inputValue();

test('the empty disk form offers its twelve orders and has the fullest disks first', async () => {
  await choose(diskForm);
  assert.deepEqual(
    await page.locator(`${orderBox} option`).allInnerTexts(),
    orders.map(({ option }) => option),
  );
  assert.equal(await orderOf(), defaultOrder);
});

for (const { key, title, column, sign } of orders) {
  test(`disks sorted by ${key} come in that order, which stays chosen`, async () => {
    await choose(diskForm);
    await page.locator(orderBox).selectOption(key);
    await clickSearch();
    await assertShowsResult(diskForm, title);
    assert.equal(await orderOf(), key);
    assert.deepEqual(await fieldTexts(diskForm), ['*', '*']);
    assert.equal(await shownLine(), `10 (${storages})`);
    const shown = (await rowTexts()).map((row) => figure(row[column]));
    assert.equal(shown.length, 10);
    assert.deepEqual(shown, [...shown].sort((a, b) => sign * (a - b)));
    assert.ok(sign * (shown[9] - shown[0]) > 0);
  });
}

test('the sort is over all storages, not over those that are shown', async () => {
  for (const [key, expected] of [
    ['totalbytes-asc', ['ux-proxy', 'Virtual', '2 048 M']],
    ['totalbytes-desc', ['ux-backup', '/backup', '48 T']],
  ]) {
    await choose(diskForm);
    await page.locator(orderBox).selectOption(key);
    await clickSearch();
    const [first] = await rowTexts();
    assert.deepEqual(first.slice(0, 3), expected);
  }
});

test('heads of a disk result have no links, and its trends a sign', async () => {
  await choose(diskForm);
  await page.locator(orderBox).selectOption('trend14d-desc');
  await clickSearch();
  assert.deepEqual(await page.locator(`${table} th`).allInnerTexts(), heads);
  assert.equal(await page.locator(`${table} th a`).count(), 0);
  const [first] = await rowTexts();
  assert.match(first[6], /^\+\d+ %$/);
});

// Patterns and what they find, without order. No text stands for all.
const patterns = [
  { texts: ['UX-WEB-#', '/'], found: ['ux-web-1 /', 'ux-web-2 /'] },
  {
    texts: ['win-files-?', '[d-e]:'],
    found: ['win-files-1 D:', 'win-files-1 E:', 'win-files-2 D:'],
  },
  { texts: ['win-[!fms]*', '?:'], found: ['win-Zürich C:', 'win-print C:'] },
  {
    texts: ['win-ZÜRICH', ''],
    shows: ['win-ZÜRICH', '*'],
    found: ['win-Zürich C:', 'win-Zürich Physical', 'win-Zürich Virtual'],
  },
  { texts: ['ux-archive', ''], shows: ['ux-archive', '*'], found: [] }, // not reached for days
  { texts: ['win-print', 'R:'], found: [] }, // a drive without a medium
  {
    texts: ['  ux-db ', '/srv/*'],
    shows: ['ux-db', '/srv/*'],
    found: ['ux-db /srv/data', 'ux-db /srv/wal'],
  },
  { texts: ['ux+web', '%'], shows: ['ux web', '%'], found: [] },
  { texts: ['<i>"ü"</i>', '&lt;'], shows: ['<i>"ü"</i>', '<'], found: [] },
];
for (const { texts, shows = texts, found } of patterns) {
  test(`the disk search for ${JSON.stringify(texts)} finds ${found.length}`, async () => {
    await search(diskForm, ...texts);
    assert.deepEqual(await fieldTexts(diskForm), shows);
    assert.equal(await shownLine(), `${found.length} (${storages})`);
    const rows = await rowTexts();
    assert.deepEqual(rows.map(([device, storage]) => `${device} ${storage}`).sort(), found);
  });
}

test('an apostrophe in a disk search ends its field and finds nothing, without harm', async () => {
  await choose(diskForm);
  await search(diskForm, "ux'db", '/');
  await assertShowsResult(diskForm, 'Highest Used Percent');
  assert.deepEqual(await fieldTexts(diskForm), ['ux', '/']);
  assert.equal(await shownLine(), `0 (${storages})`);
  assert.deepEqual(await rowTexts(), []);
});

test('HTML behind an apostrophe becomes part of the page, and the other fields work', async () => {
  await search(diskForm, "'><b id='bold'>ü & more</b>", 'C:');
  assert.equal(await page.locator('#bold').innerText(), 'ü & more');
  assert.deepEqual(await fieldTexts(diskForm), ['', 'C:']);
  assert.equal(await shownLine(), `0 (${storages})`);
  await fillIn(diskForm, ['win-mail', 'C:']);
  await clickSearch();
  assert.equal(await shownLine(), `1 (${storages})`);
  assert.equal(await page.locator('#bold').count(), 0);
});

test('the device of a disk leads to its charts under the same result', async () => {
  for (const { storage, word, charts } of [
    { storage: 'C:', word: 'C_', charts: diskCharts },
    { storage: 'Physical', word: 'mem', charts: memoryCharts },
  ]) {
    await search(diskForm, 'win-sql-1', storage);
    const rows = await rowTexts();
    assert.equal(rows.length, 1);
    await leave(() => page.locator(`${dataRows} a`).click());
    const { pathname } = new URL(page.url());
    assert.match(pathname, new RegExp(`^/histdisksearch45-105-${word}-disk-search-\\d+\\.htm$`));
    assert.deepEqual(await rowTexts(), rows);
    assert.deepEqual(await fieldTexts(diskForm), ['win-sql-1', storage]);
    assert.deepEqual(await page.locator(bandTitle).allInnerTexts(), [
      'Highest Used Percent',
      ...charts.map(({ title }) => title),
    ]);
    assert.equal(await page.locator(chart).count(), charts.length);
    await page.goBack();
    assert.deepEqual(await rowTexts(), rows);
    assert.equal(await page.locator(chart).count(), 0);
  }
});

test('a link that names a server lands on its disks and memories', async () => {
  await open('DeviceId=107');
  await assertShowsResult(diskForm, 'Highest Used Percent');
  assert.deepEqual(await fieldTexts(diskForm), ['win-Zürich', '*']);
  assert.equal(await orderOf(), defaultOrder);
  assert.equal(await shownLine(), `3 (${storages})`);
  const rows = await rowTexts();
  assert.deepEqual(rows.map(([, storage]) => storage).sort(), ['C:', 'Physical', 'Virtual']);
  assert.ok(rows.every(([device]) => device === 'win-Zürich'));
  await page.locator(field('DiskName')).fill('c:'); // in the form that stands there
  await clickSearch();
  assert.equal(await shownLine(), `1 (${storages})`);
});
