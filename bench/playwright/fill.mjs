// The scripted alternative: Playwright (playwright-core on the installed Chromium) filling the
// 100-field form with fill / check / selectOption, and one page.evaluate setting every field.
// Median of 15 fills each, as the C++ benchmark measures Tolvane.
import { chromium } from 'playwright-core';
import { createServer } from 'node:http';
import { readFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';

const pages = fileURLToPath(new URL('../pages/', import.meta.url));
const form = readFileSync(pages + 'form100.html');
const everyField = readFileSync(pages + 'fill-all.js', 'utf8');
const runs = 15;

const median = (values) => values.sort((a, b) => a - b)[Math.floor(values.length / 2)];
async function medianMs(run) {
  const times = [];
  for (let i = 0; i < runs; i++) {
    const start = process.hrtime.bigint();
    await run();
    times.push(Number(process.hrtime.bigint() - start) / 1e6);
  }
  return median(times);
}

const server = createServer((request, response) => {
  response.writeHead(200, { 'content-type': 'text/html' });
  response.end(form);
});
await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
const browser = await chromium.launch({
  executablePath: process.env.TOLVANE_BROWSER || '/usr/bin/chromium',
  args: ['--disable-gpu', '--disable-dev-shm-usage'],
});
try {
  const page = await browser.newPage();
  await page.goto(`http://127.0.0.1:${server.address().port}/form100.html`);
  const fillAll = async () => {
    for (let i = 0; i < 40; i++) await page.fill(`[name=t${i}]`, `value ${i}`);
    for (let i = 0; i < 10; i++) await page.check(`[name=r${i}][value=b]`);
    for (let i = 0; i < 20; i++) await page.check(`[name=c${i}]`);
    for (let i = 0; i < 10; i++) await page.selectOption(`[name=s${i}]`, 'y');
    for (let i = 0; i < 10; i++) await page.fill(`[name=a${i}]`, 'two\nlines');
  };
  const playwright = await medianMs(fillAll);
  const filled = (await page.evaluate(() => document.forms[0].s9.value)) === 'y';
  console.log(`fill of the 100-field form, Playwright fill/check/selectOption: median ${playwright.toFixed(1)} ms over ${runs} fills (${filled ? 'filled' : 'NOT filled'})`);
  const limit = await medianMs(() => page.evaluate(everyField));
  console.log(`fill of the 100-field form, one page.evaluate through Playwright: median ${limit.toFixed(2)} ms over ${runs} runs`);
  if (!filled) process.exitCode = 1;
} finally {
  await browser.close();
  server.close();
}
