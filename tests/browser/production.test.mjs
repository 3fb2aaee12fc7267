// Asks a running site for the pages that it builds once a day.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import { htmlOf, listName, portKinds } from './browser.mjs';
import { chartsIn } from './chart_html.mjs';
import { classes, diskListName, selectedOrder } from './disk_classes.mjs';
import { orders } from './disk_tables.mjs';

const metrics = ['involume', 'outvolume', 'inbroadcast', 'inmulticast', 'inerrors', 'outerrors'];

// The fixed pages, with the option of the selector that stands for each.
const pages = [
  ...portKinds.flatMap(({ name }) =>
    metrics.map((metric) => [listName(name, metric), listName(name, 'inerrors')]),
  ),
  ...portKinds
    .map(({ name }) => `hist45d-switch-${name}-port-summary.htm`)
    .map((name) => [name, name]),
  ...classes.flatMap(({ name }) =>
    orders.map(({ key }) => [diskListName(name, key), diskListName(name, selectedOrder)]),
  ),
  ['hist45d-disk-mem-summary.htm', 'hist45d-disk-mem-summary.htm'],
];

test('all 63 pages of the day answer, each a whole page of its report', async () => {
  assert.equal(new Set(pages.map(([name]) => name)).size, 63);
  for (const [name, option] of pages) {
    const html = await htmlOf(name);
    assert.ok(html.startsWith('<!DOCTYPE HTML PUBLIC'), name);
    assert.ok(html.endsWith('</html>'), name);
    assert.ok(html.includes(`<option selected='selected' value='${option}'>`), name);
    const charts = chartsIn(html).length;
    const rows = html.split("<tr class='tableData").length - 1;
    assert.deepEqual([charts, rows], name.startsWith('hist45d-') ? [4, 0] : [0, 10], name);
  }
});

test('the ports of all lists of ports have their charts', async () => {
  for (const [name] of pages.filter(([page]) => page.includes('-port-top10-'))) {
    const links = [...(await htmlOf(name)).matchAll(/href=(hist45-\d+-\d+-switch-[^ >]*)/g)];
    assert.equal(links.length, 10, name);
    const [, first] = links[0];
    assert.equal(chartsIn(await htmlOf(first)).length, 3, first);
  }
});
