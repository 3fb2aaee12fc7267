// Drives a real browser over the lists of disks and memories of a running site that has built its
// pages from the demonstration data and the words of the shipped Language.ini.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  address,
  bandReport,
  bandTitle,
  dataRows,
  open,
  page,
  reportBox,
  shoot,
  table,
} from './browser.mjs';
import { classes, diskListName, selectedOrder } from './disk_classes.mjs';
import { fields, figure, heads, orders } from './disk_tables.mjs';
import { leave, rowTexts, shownLine } from './search_pages.mjs';

const firstFigure = heads.length - fields.length;
const head = (index) => page.locator(`${table} th:nth-child(${firstFigure + index + 1}) a`);
const headLinks = () =>
  page.locator(`${table} th a`).evaluateAll((links) => links.map((a) => a.getAttribute('href')));

async function assertShowsList(kind, order) {
  assert.equal(await page.locator(reportBox).inputValue(), diskListName(kind.name, selectedOrder));
  assert.equal(await page.locator(bandReport).innerText(), kind.report);
  assert.equal(await page.locator(bandTitle).innerText(), order.title);
  assert.equal(await shownLine(), `10 (${kind.count})`);
  assert.deepEqual(await page.locator(`${table} th`).allInnerTexts(), heads);
  assert.equal(await page.locator(dataRows).count(), 10);
}

// The figures of the column by which the list is sorted.
const sortedFigures = async (order) =>
  (await rowTexts()).map((row) => figure(row[order.column]));

const orderOf = (key) => orders.find((order) => order.key === key);

for (const kind of classes) {
  test(`the selector leads to the ${kind.name} list, the fullest first`, async () => {
    const list = diskListName(kind.name, selectedOrder);
    await open('');
    await leave(() => page.locator(reportBox).selectOption(list));
    assert.equal(page.url(), address(`select?report=${list}`));
    await assertShowsList(kind, orderOf(selectedOrder));
    if (kind.name === 'windows') await shoot('disk_top10.png');
  });

  for (const [index, field] of fields.entries()) {
    test(`the head ${heads[firstFigure + index]} turns the ${kind.name} list over`, async () => {
      const both = orders.filter((order) => order.field === field);
      const first = both.find(({ direction }) => direction === field.first);
      const second = both.find((order) => order !== first);
      const elsewhere = fields[(index + 1) % fields.length];
      await open(diskListName(kind.name, `${elsewhere.key}-desc`));
      const best = [];
      for (const order of [first, second, first]) {
        await leave(() => head(index).click());
        assert.equal(page.url(), address(diskListName(kind.name, order.key)));
        await assertShowsList(kind, order);
        const shown = await sortedFigures(order);
        assert.deepEqual(shown, [...shown].sort((a, b) => order.sign * (a - b)));
        best.push(shown[0]);
      }
      assert.equal(best[0], best[2]);
      assert.ok(first.sign * (best[1] - best[0]) > 0, 'the two ends of the column');
    });
  }

  test(`heads of the ${kind.name} lists offer each column's own direction first`, async () => {
    for (const order of orders) {
      await open(diskListName(kind.name, order.key));
      const opposite = order.direction === 'asc' ? 'desc' : 'asc';
      assert.deepEqual(
        await headLinks(),
        fields.map((field) =>
          diskListName(kind.name, `${field.key}-${field === order.field ? opposite : field.first}`),
        ),
      );
    }
  });
}

test('lists are over all storages of one kind, and no other', async () => {
  for (const [name, direction, expected] of [
    ['physical', 'desc', ['ux-db', 'Physical', '262 G']],
    ['physical', 'asc', ['ux-proxy', 'Physical', '4 096 M']],
    ['virtual', 'asc', ['ux-proxy', 'Virtual', '2 048 M']],
    ['windows', 'desc', ['win-files-2', 'D:', '8 000 G']],
    ['windows', 'asc', ['win-print', 'C:', '80 G']],
    ['unix', 'desc', ['ux-backup', '/backup', '48 T']],
  ]) {
    await open(diskListName(name, `totalbytes-${direction}`));
    const [first] = await rowTexts();
    assert.deepEqual(first.slice(0, 3), expected);
  }
});

test('rows of a disk list have the colours of odd and even rows, and no popup', async () => {
  await open(diskListName('unix', selectedOrder));
  const colours = await page
    .locator(dataRows)
    .evaluateAll((rows) => rows.map((row) => getComputedStyle(row).backgroundColor));
  assert.deepEqual(
    colours,
    colours.map((_, index) => (index % 2 ? 'rgb(37, 84, 123)' : 'rgb(95, 115, 131)')),
  );
  assert.equal(await page.locator('.popupTable').count(), 0);
});
