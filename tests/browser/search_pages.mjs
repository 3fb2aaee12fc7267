// The four search forms, and what tests do with them.

import assert from 'node:assert/strict';
import {
  address,
  bandReport,
  bandTitle,
  dataRows,
  open,
  page,
  reportBox,
  table,
} from './browser.mjs';

export const button = 'input[type=submit]';
export const field = (name) => `input[name=${name}]`;
export const orderBox = 'select[name=OrderBy]';

const bandShown = 'table.repHeader2 >> nth=0 >> tr >> nth=1 >> td >> nth=1';

// The name of a form is that of its page, and its option in the selector. Fields and labels from
// the top down; the order of disks is a box below the fields.
const searchForm = (name, report, fields, labels) => ({ name, report, fields, labels });
export const portForm = searchForm(
  'search-device-port-name',
  'Port Search',
  ['DeviceName', 'PortName'],
  ['Device:', 'Port:'],
);
export const aliasForm = { ...portForm, name: 'search-device-port-alias' };
export const macForm = searchForm('search-mac-ip', 'MAC and IP Search', ['MacIpName'], ['MAC/IP:']);
export const diskForm = searchForm(
  'search-device-disk',
  'Disk Search',
  ['DeviceName', 'DiskName'],
  ['Device:', 'Storage:', 'Order by:'],
);
export const forms = [portForm, aliasForm, macForm, diskForm];

// Does what leads to another page, and waits until it is there.
export const leave = (action) => Promise.all([page.waitForEvent('load'), action()]);

// The empty form, by the selector.
export async function choose(form) {
  await open('');
  await leave(() => page.locator(reportBox).selectOption(form.name));
  assert.equal(page.url(), address(`select?report=${form.name}`));
}

export async function fillIn(form, texts) {
  for (const [index, name] of form.fields.entries()) {
    await page.locator(field(name)).fill(texts[index]);
  }
}

export const clickSearch = () => leave(() => page.locator(button).click());
export const pressEnter = (form) =>
  leave(() => page.locator(field(form.fields.at(-1))).press('Enter'));

async function isShown(form) {
  const selector = page.locator(reportBox);
  return (await selector.count()) === 1 && (await selector.inputValue()) === form.name;
}

// Fills in a form, which the page may show already, and sends it.
export async function search(form, ...texts) {
  if (!(await isShown(form))) await choose(form);
  await fillIn(form, texts);
  await clickSearch();
}

export const fieldTexts = (form) =>
  Promise.all(form.fields.map((name) => page.locator(field(name)).inputValue()));

// The cells of the table, row by row.
export const rowTexts = () =>
  page
    .locator(dataRows)
    .evaluateAll((rows) => rows.map((row) => [...row.cells].map((cell) => cell.innerText)));

// The count line of the band: "10 (214)".
export const shownLine = () => page.locator(bandShown).innerText();

// The band tells of the search, whose table stands between it and the footer.
export async function assertShowsResult(form, title = 'Search Result') {
  assert.equal(await page.locator(reportBox).inputValue(), form.name);
  assert.equal(await page.locator(bandReport).innerText(), form.report);
  assert.equal(await page.locator(bandTitle).innerText(), title);
  const boxes = [];
  for (const part of ['table.topHeader', 'table.repHeader', table, 'table.footer']) {
    boxes.push(await page.locator(part).boundingBox());
  }
  for (const [index, box] of boxes.slice(1).entries()) {
    assert.ok(box.y >= boxes[index].y + boxes[index].height, 'one below the other');
    assert.equal(box.width, boxes[0].width);
  }
}

// The storages of the demonstration that yesterday's table has: all but the drive without a size,
// and the four of the server that was not reached.
export const storages = 58;
