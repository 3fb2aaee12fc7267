// What holds for every page with 45-day charts, whatever they show.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import { bytesOf, htmlOf, listName, page, pointAway, popupLink, visibility } from './browser.mjs';
import { ageAt, calendarBefore, chartsIn, days, missedDays, positionAt } from './chart_html.mjs';

export const chart = 'table.chartData';
const dayRow = 'table.chartDayNr';
const barColours = ['rgb(95, 115, 131)', 'rgb(37, 84, 123)']; // of the Blue theme

// The site's own day, which is not that of this machine everywhere: the newest on which the
// demonstration saw an address.
export async function siteToday() {
  const html = await htmlOf(listName('access', 'inerrors'));
  const seen = [...html.matchAll(/LastSeen: (\d{4}-\d\d-\d\d)/g)];
  assert.ok(seen.length > 0);
  return seen.map(([, date]) => date).sort().at(-1);
}

// The cells of a block of each chart's band, 0 at its left and 2 at its right.
export const bandBlocks = (block) =>
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
export const textsOf = (blocks) => blocks.map((cells) => cells.map(({ text }) => text));

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

// Declares the tests of a page. `open` shows it and gives its name, `charts` are those that it has
// by the rules of chart_html.mjs, and `whole` the places of those with figures for every day that
// was imported.
export function checkChartPage({ name, charts, whole = [...charts.keys()], open: openPage }) {
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
    for (const place of whole) {
      for (const [index, { figures, bars, title }] of said[place].entries()) {
        const isMissed = missedDays.includes(ageAt(index + 1));
        assert.equal(figures.every((figure) => figure.endsWith(': -')), isMissed, title);
        if (isMissed) assert.deepEqual(bars, [1, 1], title);
      }
    }
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
