// The browser that all tests share, and what they all do with a page.
//
//   QUILLON_URL    address of the site, http://127.0.0.1:8080/
//   QUILLON_SHOTS  folder for the screenshots
//
// The pages are asked for one after the other over few connections: the site
// drops all of them when there are more than 19 at a time.

import assert from 'node:assert/strict';
import { mkdir, mkdtemp, rm } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { after, before, beforeEach } from 'node:test';
import { chromium } from 'playwright-core';

const siteUrl = process.env.QUILLON_URL;
const shotsFolder = process.env.QUILLON_SHOTS;
assert.ok(siteUrl && shotsFolder, 'QUILLON_URL and QUILLON_SHOTS must be set');

export const portKinds = [
  { name: 'access', report: 'Access Ports Top 10', summary: 'Access Ports 45 Days' },
  { name: 'trunk', report: 'Trunk Ports Top 10', summary: 'Trunk Ports 45 Days' },
];

export const reportBox = 'select[name=report]';
export const table = 'table.tableData';
export const dataRows = `${table} tr[class]`;
export const bandReport = 'table.repHeader2 >> nth=0 >> tr >> nth=0 >> td >> nth=1';
export const bandTitle = 'table.repHeader > tbody > tr > td:nth-child(2)';

export let page;
let userData;
let browser;

before(async () => {
  await mkdir(shotsFolder, { recursive: true });
  userData = await mkdtemp(path.join(tmpdir(), 'quillon-browser-'));
  browser = await chromium.launchPersistentContext(userData, {
    executablePath: '/usr/bin/chromium',
    headless: true,
    viewport: { width: 1000, height: 800 },
    args: [
      '--no-sandbox',
      '--disable-gpu',
      '--disable-quic',
      '--no-first-run',
      '--disable-background-networking',
      '--disable-component-update',
      '--disable-sync',
    ],
  });
  browser.setDefaultTimeout(15_000);
  page = browser.pages()[0];
});

after(async () => {
  await browser?.close();
  await rm(userData, { recursive: true, force: true });
});

beforeEach(() => pointAway());

// The pointer rests where no page has anything under it.
export const pointAway = () => page.mouse.move(990, 790);

export const address = (name) => new URL(name, siteUrl).href;
export const listName = (kind, metric) => `switch-${kind}-port-top10-${metric}.htm`;
export const open = (name) => page.goto(address(name));
export const shoot = (name) =>
  page.screenshot({ path: path.join(shotsFolder, name), fullPage: true });
export const visibility = (id) =>
  page.locator(`#${id}`).evaluate((e) => getComputedStyle(e).visibility);
export const popupLink = (id) => page.locator(`a[onmouseover*="'${id}'"]`);

// The bytes of an answer, past the browser.
export const bytesOf = async (name) =>
  Buffer.from(await (await fetch(address(name))).arrayBuffer());
export const htmlOf = async (name) => (await bytesOf(name)).toString('latin1');
