// Drives a real browser over the search forms of a running site that holds the demonstration data
// and the words of the shipped Language.ini, and over what the searches for ports and addresses
// find.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  address,
  dataRows,
  listName,
  open,
  page,
  pointAway,
  popupLink,
  reportBox,
  shoot,
  table,
  visibility,
} from './browser.mjs';
import {
  aliasForm,
  assertShowsResult,
  button,
  choose,
  clickSearch,
  diskForm,
  field,
  fieldTexts,
  fillIn,
  forms,
  leave,
  macForm,
  orderBox,
  portForm,
  pressEnter,
  rowTexts,
  search,
  shownLine,
} from './search_pages.mjs';

// What each form finds in the demonstration: the first two columns of the table, its title where
// it is another one. The figures of disks, and so their order, are those of the day.
const examples = [
  {
    form: portForm,
    texts: ['zürich-*', '*1/0/1'],
    shown: '2 (2)',
    rows: ['Zürich-1 GigabitEthernet1/0/1', 'Zürich-2 GigabitEthernet1/0/1'],
  },
  {
    form: aliasForm,
    texts: ['office-*', 'BÜRO EMPFANG*'],
    shown: '4 (4)',
    rows: [
      'office-0-east GigabitEthernet1/0/3',
      'office-1-east GigabitEthernet1/0/9',
      'office-2-west ge-0/0/3',
      'office-3-west ge-0/0/9',
    ],
  },
  {
    form: macForm,
    texts: ['10.130.*'],
    shown: '7 (7)',
    rows: [2, 3, 4, 4, 6, 9, 9].map((number) => `phones A${number}`), // two have two addresses
  },
  {
    form: diskForm,
    texts: ['win-*', 'c:'],
    shown: '7 (58)',
    title: 'Highest Used Percent',
    rows: [
      'win-Zürich C:',
      'win-files-1 C:',
      'win-files-2 C:',
      'win-mail C:',
      'win-print C:',
      'win-sql-1 C:',
      'win-sql-2 C:',
    ],
  },
];
const portExamples = examples.filter(({ form }) => form !== diskForm);

const ways = [
  { name: 'its button', send: clickSearch },
  { name: 'the Enter key', send: pressEnter },
];

const shots = new Map([
  [portForm, 'port_search.png'],
  [macForm, 'mac_search.png'],
  [diskForm, 'disk_search.png'],
]);

const devicesAndNames = async () => (await rowTexts()).map(([device, name]) => `${device} ${name}`);

// The lines of a port's popup, by their words.
async function popupOf(row) {
  const id = `t${row}`;
  await popupLink(id).hover();
  assert.equal(await visibility(id), 'visible');
  const lines = page.locator(`#${id} .div-table-row`);
  const cells = await lines.evaluateAll((found) =>
    found.map((line) => [...line.children].map((cell) => cell.innerText.replaceAll('\xa0', ' '))),
  );
  await pointAway();
  assert.equal(await visibility(id), 'hidden');
  return new Map(cells);
}

for (const form of forms) {
  test(`the selector leads to the empty form ${form.name}`, async () => {
    await choose(form);
    assert.equal(await page.locator(reportBox).inputValue(), form.name);
    assert.deepEqual(await fieldTexts(form), form.fields.map(() => ''));
    assert.equal(await page.locator('input[type=text]').count(), form.fields.length);
    assert.equal(await page.locator(button).inputValue(), 'Search');
    assert.equal(await page.locator(orderBox).count(), form === diskForm ? 1 : 0);
    assert.equal(await page.locator(table).count(), 0);
    assert.equal(await page.locator('table.footer').count(), 0);
  });

  test(`the form ${form.name} stands in the top band, labels beside their fields`, async () => {
    await choose(form);
    const box = async (selector) => {
      const { x, y, width, height } = await page.locator(selector).boundingBox();
      return { left: x, right: x + width, top: y, bottom: y + height, middle: y + height / 2 };
    };
    const band = await box('table.topHeader');
    const selector = await box(reportBox);
    const sender = await box(button);
    const help = await box('th:has(a[onmouseover*="h1"])');
    const inputs = form.fields.map(field);
    if (form === diskForm) inputs.push(orderBox);
    let above = band.top;
    for (const [index, input] of inputs.entries()) {
      const label = await box(`th:text-is("${form.labels[index]}")`);
      const place = await box(input);
      assert.ok(selector.right < label.left && label.right < place.left, `${input} and its label`);
      assert.ok(place.right < sender.left, `the button stands right of ${input}`);
      assert.ok(Math.abs(label.middle - place.middle) < 4, `${input} has its label beside it`);
      assert.ok(place.top >= above && place.bottom < band.bottom, `${input} has room`);
      above = place.bottom;
    }
    assert.ok(sender.right < help.left && help.right < band.right);
    assert.ok(Math.abs(sender.middle - band.middle) < 4);
  });
}

for (const { form, texts, shown, rows, title } of examples) {
  for (const { name, send } of ways) {
    test(`the form ${form.name} sent by ${name} finds, and keeps its texts`, async () => {
      await choose(form);
      await fillIn(form, texts);
      await send(form);
      assert.equal(page.url(), address(form.name));
      await assertShowsResult(form, title);
      assert.deepEqual(await fieldTexts(form), texts);
      assert.equal(await shownLine(), shown);
      const found = await devicesAndNames();
      assert.deepEqual(form === diskForm ? found.sort() : found, rows);
      if (shots.has(form)) await shoot(shots.get(form));
    });
  }
}

for (const { form, texts } of portExamples) {
  test(`a device found by ${form.name} leads to its charts under the same result`, async () => {
    await search(form, ...texts);
    const rows = await rowTexts();
    const shown = await shownLine();
    await leave(() => page.locator(`${dataRows} >> nth=0 >> td >> nth=0 >> a`).click());
    assert.match(new URL(page.url()).pathname, /^\/hist45-\d+-\d+-switch-[a-z-]+-\d+\.htm$/);
    assert.equal(await page.locator('table.chartData').count(), 3);
    assert.deepEqual(await rowTexts(), rows);
    assert.equal(await shownLine(), shown);
    assert.deepEqual(await fieldTexts(form), texts);
    assert.equal(await page.locator(reportBox).inputValue(), form.name);
    const bands = page.locator('table.repHeader2 >> nth=2 >> td >> nth=1');
    assert.equal(await bands.innerText(), rows[0][0], 'the charts are those of the device');

    await page.goBack();
    await assertShowsResult(form);
    assert.deepEqual(await rowTexts(), rows);
    assert.deepEqual(await fieldTexts(form), texts);
    await search(form, ...form.fields.map(() => ''));
    assert.deepEqual(await fieldTexts(form), form.fields.map(() => '*'));
    assert.equal((await rowTexts()).length, 10);
  });
}

test('the selector leads from a result to another report', async () => {
  await search(portForm, 'core-1', '*');
  await leave(() => page.locator(reportBox).selectOption(listName('trunk', 'inerrors')));
  assert.equal(await page.locator(reportBox).inputValue(), listName('trunk', 'inerrors'));
  assert.equal(await page.locator(button).count(), 0);
});

test('pointing at a port of a result shows its popup, with names as they are', async () => {
  await search(aliasForm, '*-east', 'R&D lab*');
  const popup = await popupOf(1);
  assert.equal(popup.get('Device'), 'office-2-east  (RecNo: 9)');
  assert.equal(popup.get('Device IP'), '10.10.2.14');
  assert.equal(popup.get('Port Alias'), 'R&D lab 3');
  assert.match(popup.get('In Errors'), /^\d[\d ]* per 24h/);
  await search(aliasForm, '*', 'Director*');
  assert.equal(await shownLine(), '10 (11)');
  assert.equal((await popupOf(1)).get('Port Alias'), "Director's office");
});

test('a popup of a result opens just below its row', async () => {
  await search(portForm, 'Zürich-1', '*');
  for (const row of [1, 10]) {
    await popupLink(`t${row}`).hover();
    const popup = await page.locator(`#t${row}`).boundingBox();
    const line = await popupLink(`t${row}`).boundingBox();
    assert.ok(popup.y > line.y && popup.y < line.y + 40, `row ${row}`);
    await pointAway();
  }
});

test('more than ten ports show ten and tell how many there are', async () => {
  await search(portForm, 'Zürich-*', '*');
  assert.equal(await shownLine(), '10 (28)');
  assert.equal((await rowTexts()).length, 10);
});

test('digits, dots and stars in the device field search addresses of devices', async () => {
  await search(portForm, '10.30.0.1*', '*1/0/12');
  assert.deepEqual(await devicesAndNames(), [
    'Zürich-1 GigabitEthernet1/0/12',
    'Zürich-2 GigabitEthernet1/0/12',
  ]);
  await search(portForm, '10', '*');
  assert.equal(await shownLine(), '0 (0)');
});

// Texts for the alias, the form in which the field shows them afterwards, how many ports have it.
const aliasTexts = [
  { typed: '  Büro Empfang ', shows: 'Büro Empfang', found: 1 },
  { typed: 'Büro+Empfang', shows: 'Büro Empfang', found: 1 },
  { typed: 'b[aü]ro*', found: 11 },
  { typed: 'b[!ü]ro*', found: 0 },
  { typed: 'R&D*', found: 10 },
  { typed: 'R&amp;D*', shows: 'R&D*', found: 0 }, // what was sent is HTML for a browser
  { typed: '<b>Küche</b>', found: 0 },
  { typed: 'say "hi"', found: 0 },
  { typed: 'Москва', found: 0 }, // sent as "&#1052;...", since the pages' charset lacks it
  { typed: '-- ;', found: 0 },
  { typed: 'ü'.repeat(300), found: 0 },
];
for (const { typed, shows = typed, found } of aliasTexts) {
  test(`the search for ${JSON.stringify(typed.slice(0, 20))} finds ${found}`, async () => {
    await search(aliasForm, '*', typed);
    await assertShowsResult(aliasForm);
    assert.deepEqual(await fieldTexts(aliasForm), ['*', shows]);
    assert.equal(await shownLine(), `${Math.min(found, 10)} (${found})`);
    assert.equal((await rowTexts()).length, Math.min(found, 10));
    assert.equal(await page.locator('table.topHeader td > b').count(), 0);
  });
}

for (const { form, texts } of portExamples) {
  test(`an apostrophe sent by ${form.name} ends its field, above an empty table`, async () => {
    await search(form, ...texts); // rows that must not stay
    assert.notDeepEqual(await rowTexts(), []);
    await search(form, ...texts.slice(0, -1), "Dire'ctor*");
    await assertShowsResult(form);
    assert.deepEqual(await fieldTexts(form), [...texts.slice(0, -1), 'Dire']);
    assert.deepEqual(await rowTexts(), []);
    await search(form, ...texts); // the form still works
    assert.deepEqual(await fieldTexts(form), texts);
    assert.notDeepEqual(await rowTexts(), []);
  });
}

test('addresses come with the newest first', async () => {
  await search(macForm, '10.118.*');
  assert.equal(await shownLine(), '10 (11)');
  const seen = [];
  for (const [index, [device]] of (await rowTexts()).entries()) {
    const popup = await popupOf(index + 1);
    assert.equal(device, 'Werk-Süd');
    assert.match(popup.get('User IP'), /^10\.118\.\d+\.\d+$/);
    seen.push(/\(LastSeen: (\d{4}-\d\d-\d\d)\)$/.exec(popup.get('User MAC'))[1]);
  }
  assert.equal(seen.length, 10);
  assert.ok(seen[0] > seen[9]);
  assert.deepEqual(seen, [...seen].sort().reverse());
});

test('a MAC address finds the same port in each of its written forms', async () => {
  await search(macForm, '10.130.*');
  const [first] = await rowTexts();
  const [mac] = /^([0-9A-F]{2} ){5}[0-9A-F]{2}/.exec((await popupOf(1)).get('User MAC'));
  const digits = mac.replaceAll(' ', '');
  const dotted = [0, 4, 8].map((start) => digits.slice(start, start + 4)).join('.');
  const written = [mac, mac.replaceAll(' ', ':'), mac.replaceAll(' ', '-'), dotted];
  for (const form of [...written, ...written.map((text) => text.toLowerCase())]) {
    await search(macForm, form);
    assert.equal(await shownLine(), '1 (1)', form);
    assert.deepEqual(await rowTexts(), [first], form);
    const [shown] = await fieldTexts(macForm);
    assert.equal(shown, form === form.toLowerCase() ? mac.toLowerCase() : mac);
  }
});

test('a link that names a switch lands on its ports', async () => {
  await open('DeviceId=18');
  await assertShowsResult(portForm);
  assert.deepEqual(await fieldTexts(portForm), ['Werk-Süd', '*']);
  assert.equal(await shownLine(), '10 (14)');
  assert.ok((await rowTexts()).every(([device]) => device === 'Werk-Süd'));
  await search(portForm, 'Werk-Süd', 'ge-0/0/1*'); // in the form that stands there
  assert.equal(await shownLine(), '4 (4)');
});

for (const id of ['999', 'core-1']) {
  test(`a link to the device ${id}, which is none, opens the default page`, async () => {
    await open(`DeviceId=${id}`);
    assert.equal(await page.locator(reportBox).inputValue(), 'none');
    assert.equal(await page.locator(table).count(), 0);
    assert.equal(await page.locator(button).count(), 0);
  });
}
