// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// The job as an expert writes it for a general browser-driving library. Arguments: the way
// ("calls": the library's ordinary calls; "scripts": one page script a field), the page's address,
// the login, a file with the entries. Uses the benchmark's line protocol on standard input and
// output.

import {readFileSync} from 'node:fs';
import {createInterface} from 'node:readline';
import {chromium} from 'playwright-core';

const [way, address, login, entriesFile] = process.argv.slice(2);
const entries = JSON.parse(readFileSync(entriesFile, 'utf8'));

async function fillByCalls(page, entry) {
  await page.fill('[name=rule_name]', entry.name);
  await page.fill('[name=start_port]', entry.start);
  await page.fill('[name=end_port]', entry.end);
  await page.selectOption('[name=protocol]', {label: entry.protocol});
  await page.fill('[name=server_ip]', entry.address);
  await page.check('[name=enabled]');
}

async function fillByScripts(page, entry) {
  const write = ([name, value]) => {
    document.getElementsByName(name)[0].value = value;
  };
  await page.evaluate(write, ['rule_name', entry.name]);
  await page.evaluate(write, ['start_port', entry.start]);
  await page.evaluate(write, ['end_port', entry.end]);
  await page.evaluate(write, ['protocol', entry.protocol.toLowerCase()]);
  await page.evaluate(write, ['server_ip', entry.address]);
  await page.evaluate(() => {
    document.getElementsByName('enabled')[0].checked = true;
  });
}

async function save(page) {
  const loaded = page.waitForEvent('load');
  if (way === 'calls') {
    await page.click('[name=btn_add]');
  } else {
    await page.evaluate(() => document.getElementsByName('btn_add')[0].click());
  }
  await loaded;
}

const fill = way === 'calls' ? fillByCalls : fillByScripts;
const browser = await chromium.launch({
  executablePath: process.env.QUAYLINE_BENCH_CHROMIUM || '/usr/bin/chromium',
  headless: true,
  args: [
    '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
    '--disable-background-networking', '--disable-component-update', '--disable-sync',
    '--no-proxy-server',
  ],
});
// The login goes as a header of every request: the library's own way of answering the question
// for it holds every request up.
const context = await browser.newContext({
  viewport: {width: 1024, height: 768},
  extraHTTPHeaders: {authorization: 'Basic ' + Buffer.from(login).toString('base64')},
});
const page = await context.newPage();
await page.goto(address);
console.log('ready');

for await (const line of createInterface({input: process.stdin})) {
  if (line === 'job') {
    for (const entry of entries) {
      await page.goto(address);
      await fill(page, entry);
      await save(page);
    }
  }
  console.log('done');
}
await browser.close();
