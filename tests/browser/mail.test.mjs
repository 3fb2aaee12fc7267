// Drives a real browser over the pages of the report mail that a running site has sent, opened
// from a folder as a mail program saves them, and over the links in it.
//
//   QUILLON_MAILS  folder in which the mails of the demonstration arrive (a Maildir)

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { mkdtemp, readFile, readdir, rm } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { after, before, test } from 'node:test';
import { setTimeout as pause } from 'node:timers/promises';
import { fileURLToPath, pathToFileURL } from 'node:url';
import {
  address,
  bandTitle,
  bytesOf,
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
import { bandBlocks, chart, textsOf } from './chart_checks.mjs';
import { portCharts, summaryCharts } from './chart_html.mjs';
import { rowTexts } from './search_pages.mjs';

const mailsFolder = process.env.QUILLON_MAILS;
assert.ok(mailsFolder, 'QUILLON_MAILS must be set');

const stylesheet = 'qws.css';
const lists = [
  listName('access', 'involume'),
  listName('access', 'inerrors'),
  listName('trunk', 'outvolume'),
];
const summary = 'switch-access-port-summary.htm';
const signature = ['Quillon Network Reporting', 'https://quillon.example/'];
const portPage = /^hist45-\d+-\d+\.htm$/;

// The mail goes out when all pages are built.
const mailDeadline = 180_000;
const mailPause = 500;

let saved;
let mail;

async function untilAMailIsThere() {
  const end = Date.now() + mailDeadline;
  const arrived = path.join(mailsFolder, 'new');
  while ((await readdir(arrived).catch(() => [])).length === 0) {
    assert.ok(Date.now() < end, `a mail arrives in ${arrived}`);
    await pause(mailPause);
  }
}

before(async () => {
  await untilAMailIsThere();
  saved = await mkdtemp(path.join(tmpdir(), 'quillon-mail-'));
  const script = fileURLToPath(new URL('save_mail.py', import.meta.url));
  mail = JSON.parse(execFileSync('/usr/bin/python3', [script, mailsFolder, saved]));
});

after(() => rm(saved, { recursive: true, force: true }));

const openSaved = (name) => page.goto(pathToFileURL(path.join(saved, name)).href);
const port = () => mail.attachments.find((name) => portPage.test(name));

const styleOf = (selector) =>
  page
    .locator(selector)
    .first()
    .evaluate((element) => {
      const { backgroundColor, color, fontFamily, fontSize, padding, borderBottom } =
        getComputedStyle(element);
      return { backgroundColor, color, fontFamily, fontSize, padding, borderBottom };
    });

test('the mail brings the chosen reports, the port and their stylesheet', async () => {
  assert.deepEqual(mail.attachments, [...lists, summary, port(), stylesheet]);
  assert.match(mail.to, /demonstration@localhost/);
  assert.match(mail.from, /quillon@localhost/);
  assert.equal(mail.subject, 'Quillon Network Report');
  const delivered = await readFile(path.join(saved, stylesheet));
  assert.ok(delivered.equals(await bytesOf(stylesheet)), 'the stylesheet of the site');
});

test('the text of the mail has a link to each page, which opens it on the site', async () => {
  const pages = mail.attachments.slice(0, -1);
  const links = pages.map(address);
  const lines = mail.body.split(/\r?\n/).filter((line) => line !== '');
  assert.deepEqual(lines, [...links, ...signature]);
  for (const [index, link] of links.entries()) {
    await page.goto(link);
    const isList = lists.includes(pages[index]);
    assert.equal(await page.locator(dataRows).count(), isList ? 10 : 0, link);
    assert.equal((await page.locator(chart).count()) > 0, !isList, link);
  }
});

test('a saved page looks as on the site, by the stylesheet beside it', async () => {
  const parts = ['body', `${table} th`, table, dataRows, `${dataRows} td`, 'table.footer'];
  await open(lists[0]);
  const onSite = [];
  for (const part of parts) onSite.push(await styleOf(part));
  await openSaved(lists[0]);
  for (const [index, part] of parts.entries()) {
    assert.deepEqual(await styleOf(part), onSite[index], part);
  }
  const head = await styleOf(`${table} th`);
  assert.equal(head.color, 'rgb(255, 255, 255)');
  assert.equal(head.borderBottom, '1px solid rgb(255, 255, 255)');
  assert.equal(head.padding, '2px');
  assert.equal((await styleOf(table)).backgroundColor, 'rgb(0, 51, 102)');
  assert.equal((await styleOf('body')).backgroundColor, 'rgb(204, 204, 204)');
  await pointAway();
  await shoot('mail_page.png');
});

for (const list of lists) {
  test(`the saved page ${list} has the rows of the site, and no selector`, async () => {
    await open(list);
    const rows = await rowTexts();
    const title = await page.locator(bandTitle).innerText();
    await openSaved(list);
    assert.deepEqual(await rowTexts(), rows);
    assert.equal(await page.locator(bandTitle).innerText(), title);
    assert.equal(await page.locator(reportBox).count(), 0);
    assert.equal(await page.locator('table.topHeader').count(), 0);
    assert.equal(await page.locator('table.footer').count(), 1);
  });
}

test('pointing at a port of a saved page shows its popup, and leaving hides it', async () => {
  await openSaved(lists[1]);
  assert.equal(await visibility('t1'), 'hidden');
  await popupLink('t1').hover();
  assert.equal(await visibility('t1'), 'visible');
  assert.match(await page.locator('#t1').innerText(), /In Errors\s+\d[\d ]* per 24h/);
  await pointAway();
  assert.equal(await visibility('t1'), 'hidden');
});

test('the saved summary has the four charts of the access ports', async () => {
  await openSaved(summary);
  const titles = summaryCharts.map(({ title }) => title);
  assert.deepEqual(await page.locator(bandTitle).allInnerTexts(), titles);
  assert.deepEqual(
    textsOf(await bandBlocks(0)),
    titles.map(() => ['Report:', 'Access Ports 45 Days', '', '']),
  );
  assert.equal(await page.locator(chart).count(), 4);
  assert.equal(await page.locator(reportBox).count(), 0);
});

test('the saved page of the port has its row above its charts', async () => {
  await openSaved(port());
  const rows = await rowTexts();
  assert.equal(rows.length, 1);
  const [device, name] = rows[0];
  assert.deepEqual(
    textsOf(await bandBlocks(0)),
    portCharts.map(() => ['Device:', device, 'Port:', name]),
  );
  assert.equal(await page.locator(chart).count(), portCharts.length);
  assert.equal(await page.locator('table.footer').count(), 1);
  await popupLink('t1').hover();
  assert.match(await page.locator('#t1').innerText(), /Port Alias\s+Büro Empfang 2/);
  await pointAway();
});
