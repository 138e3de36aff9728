// A headless browser, pages in it, and what it complains of.

import puppeteer from 'puppeteer-core';

export async function launch() {
  return puppeteer.launch({
    executablePath: process.env.QUILON_CHROMIUM ?? '/usr/bin/chromium',
    args: ['--no-sandbox', '--use-angle=swiftshader', '--enable-unsafe-swiftshader', '--font-render-hinting=none'],
  });
}

/** Opens a page and waits until it shows its model. What it complains of gathers in page.complaints. */
export async function open(browser, url, {width = 1200, height = 800, dark = false, hash = ''} = {}) {
  const page = await browser.newPage();
  page.complaints = [];
  page.requests = [];
  page.on('console', (message) => {
    if (['error', 'warn', 'warning'].includes(message.type())) page.complaints.push(message.text());
  });
  page.on('pageerror', (error) => page.complaints.push(String(error)));
  page.on('request', (request) => page.requests.push(request.url()));
  await page.setViewport({width, height});
  await page.emulateMediaFeatures([{name: 'prefers-color-scheme', value: dark ? 'dark' : 'light'}]);
  await page.goto(url + hash);
  await page.waitForSelector('body[data-state]', {timeout: 60000});
  return page;
}
