// Drives a real browser over the fixed pages and the lists of a running site that
// holds the demonstration data and the words of the shipped Language.ini.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  address,
  bandReport,
  bandTitle,
  bytesOf,
  dataRows,
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

// In the order of the columns, with the words of their heads.
const metrics = [
  { name: 'involume', head: 'In Volume' },
  { name: 'outvolume', head: 'Out Volume' },
  { name: 'inbroadcast', head: 'In Broadcast' },
  { name: 'inmulticast', head: 'In Multicast' },
  { name: 'inerrors', head: 'In Errors' },
  { name: 'outerrors', head: 'Out Errors' },
];
const firstMetricColumn = 3;

// Aliases of the demonstration's access ports that ISO-8859-1 can show.
const nonAsciiAliases = [
  'Büro Empfang',
  'Küche',
  'Sala de reuniões',
  'Café Entrée',
  'Smørrebrød bar',
  'Öffnungszeiten-Anzeige',
];

async function assertShowsList(kind, metric) {
  assert.equal(await page.locator(bandReport).innerText(), kind.report);
  assert.equal(await page.locator(bandTitle).innerText(), `Top 10 ${metric.head}`);
  assert.equal(await page.locator(dataRows).count(), 10);
}

test('the default page shows the selector on its first option and no report', async () => {
  await open('');
  assert.equal(await page.locator(reportBox).inputValue(), 'none');
  assert.equal(await page.locator(reportBox).evaluate((box) => box.selectedIndex), 0);
  assert.equal(await page.locator('table.repHeader').count(), 0);
  assert.equal(await page.locator(table).count(), 0);
  await shoot('default.png');
});

test('a name that no report has opens the default page', async () => {
  const answer = await open('no-such-report.htm');
  assert.equal(answer.status(), 200);
  assert.equal(await page.locator(reportBox).inputValue(), 'none');
  assert.equal(await page.locator(table).count(), 0);
});

test('choosing a report in the box opens the access top 10 by input errors', async () => {
  const list = listName('access', 'inerrors');
  await open('');
  await Promise.all([
    page.waitForURL(address(`select?report=${list}`)),
    page.locator(reportBox).selectOption(list),
  ]);
  assert.equal(await page.locator(reportBox).inputValue(), list);
  await assertShowsList(portKinds[0], metrics[4]);
  await shoot('top10.png');
});

for (const kind of portKinds) {
  for (const [column, metric] of metrics.entries()) {
    test(`the column head ${metric.head} opens its list of ${kind.name} ports`, async () => {
      const list = listName(kind.name, metric.name);
      const elsewhere = metrics[(column + 1) % metrics.length];
      await open(listName(kind.name, elsewhere.name));
      const head = page.locator(`${table} th:nth-child(${firstMetricColumn + column}) a`);
      assert.equal(await head.innerText(), metric.head);
      await Promise.all([page.waitForURL(address(list)), head.click()]);
      await assertShowsList(kind, metric);
    });
  }
}

// Volumes are rounded to their leading digits and carry units; counts are exact.
for (const [column, metric] of [...metrics.entries()].slice(2)) {
  test(`the list by ${metric.head} runs from the largest figure down`, async () => {
    await open(listName('access', metric.name));
    const cells = page.locator(`${dataRows} td:nth-of-type(${firstMetricColumn + column})`);
    const shown = (await cells.allInnerTexts()).map((text) => Number(text.replaceAll(' ', '')));
    assert.equal(shown.length, 10);
    assert.deepEqual(shown, [...shown].sort((a, b) => b - a));
  });
}

test('pointing at a port shows its popup, and leaving hides it', async () => {
  await open(listName('access', 'inerrors'));
  assert.equal(await visibility('t1'), 'hidden');
  await popupLink('t1').hover();
  assert.equal(await visibility('t1'), 'visible');
  assert.match(await page.locator('#t1').innerText(), /In Errors\s+\d[\d ]* per 24h/);
  await shoot('popup.png');
  await pointAway();
  assert.equal(await visibility('t1'), 'hidden');
});

test('pointing at a row lights it up, and leaving restores it', async () => {
  await open(listName('access', 'inerrors'));
  for (const [row, restingClass] of ['tableDataOdd', 'tableDataEven'].entries()) {
    const line = page.locator(dataRows).nth(row);
    assert.equal(await line.getAttribute('class'), restingClass);
    await line.locator('td').last().hover();
    assert.equal(await line.getAttribute('class'), 'tableDataActive');
    await pointAway();
    assert.equal(await line.getAttribute('class'), restingClass);
  }
});

test('pointing at the question mark shows the help, and leaving hides it', async () => {
  await open('');
  assert.equal(await visibility('h1'), 'hidden');
  await popupLink('h1').hover();
  assert.equal(await visibility('h1'), 'visible');
  assert.match(await page.locator('#h1').innerText(), /How to read these pages/);
  await pointAway();
  assert.equal(await visibility('h1'), 'hidden');
});

test('the stylesheet of the Blue theme is in force', async () => {
  await open('');
  const background = (selector) =>
    page.locator(selector).first().evaluate((e) => getComputedStyle(e).backgroundColor);
  assert.equal(await background('body'), 'rgb(204, 204, 204)');
  assert.equal(await background('table.topHeader'), 'rgb(0, 51, 102)');
});

test('letters outside ASCII in an alias show correctly in the popup', async () => {
  const aliases = new RegExp(`Port Alias\\s+(${nonAsciiAliases.join('|')})`);
  for (const kind of portKinds) {
    for (const metric of metrics) {
      await open(listName(kind.name, metric.name));
      const popup = page.locator('.popupTable', { hasText: aliases });
      if ((await popup.count()) === 0) continue;
      const id = await popup.first().getAttribute('id');
      await popupLink(id).hover();
      assert.equal(await visibility(id), 'visible');
      assert.match(await page.locator(`#${id}`).innerText(), aliases);
      // The name under which browsers know ISO-8859-1.
      assert.equal(await page.evaluate(() => document.characterSet), 'windows-1252');
      return;
    }
  }
  assert.fail(`no top 10 list shows one of the aliases ${nonAsciiAliases.join(', ')}`);
});

test('the icon is answered as image/x-icon', async () => {
  const answer = await fetch(address('favicon.ico'));
  const bytes = Buffer.from(await answer.arrayBuffer());
  assert.equal(answer.headers.get('content-type'), 'image/x-icon');
  assert.equal(bytes.length, Number(answer.headers.get('content-length')));
  assert.deepEqual([...bytes.subarray(0, 6)], [0, 0, 1, 0, 2, 0], 'an icon file with two images');
});

test('a second request of a list gives the same bytes', async () => {
  for (const kind of portKinds) {
    const list = listName(kind.name, 'outvolume');
    const first = await bytesOf(list);
    assert.ok(first.length > 0);
    assert.ok(first.equals(await bytesOf(list)), `the two answers for ${kind.name} ports differ`);
  }
});
