// Plays pages of `sorvel web` in a browser: player_test.mjs PROGRAM MAKE_FILMS FOLDER. The browser is Chromium. FOLDER is
// for files and for screenshots of what failed. The pictures are those that `sorvel play` gives.
import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import http from 'node:http';
import path from 'node:path';
import { fileURLToPath } from 'node:url';
import { chromium } from 'playwright-core';

const [program, makeFilms, folder] = process.argv.slice(2).map((each) => path.resolve(each));
const samples = path.join(path.dirname(fileURLToPath(import.meta.url)), '../../samples');
const at = (name) => path.join(folder, name);
const sorvel = (...words) => execFileSync(program, words, { stdio: ['ignore', 'pipe', 'pipe'] }).toString();
const sleep = (milliseconds) => new Promise((done) => { setTimeout(done, milliseconds); });

let browser;
let passed = 0;
const failures = [];

function expect(condition, words) {
  if (!condition) throw new Error(words);
}
function expectEqual(left, right, words) {
  expect(left === right, `${words}: ${left}, not ${right}`);
}

// A page of its own, whose errors and requests are counted.
async function open(address, options = {}) {
  const context = await browser.newContext({ viewport: { width: 1000, height: 700 }, locale: 'ja-JP', ...options });
  const page = await context.newPage();
  page.errors = [];
  page.requests = [];
  page.on('pageerror', (error) => page.errors.push(error.message));
  page.on('request', (request) => page.requests.push(request.url()));
  await page.goto(address.startsWith('http') ? address : `file://${address}`);
  await page.waitForFunction(() => document.getElementById('time').textContent !== '' ||
    !document.getElementById('message').hidden);
  return page;
}

const still = { reducedMotion: 'reduce' };
const tickOf = async (page) => Number(await page.locator('#timeline').getAttribute('aria-valuenow'));
const lengthOf = async (page) => Number(await page.locator('#timeline').getAttribute('aria-valuemax')) + 1;
const isPlaying = (page) => page.evaluate(() => document.getElementById('player').classList.contains('is-playing'));
async function press(page, key, times = 1) {
  for (let i = 0; i < times; ++i) await page.keyboard.press(key);
}
async function seek(page, part) {
  const bounds = await page.locator('#timeline').boundingBox();
  await page.mouse.click(bounds.x + part * (bounds.width - 1), bounds.y + bounds.height / 2);
  // The page shows it with its next frame.
  await page.evaluate(() => new Promise((done) => { requestAnimationFrame(() => requestAnimationFrame(done)); }));
  return tickOf(page);
}

// The red of each pixel on the canvas; green and blue are the same.
async function greysOf(page) {
  const text = await page.evaluate(() => {
    const canvas = document.getElementById('picture');
    const { data } = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
    const greys = new Uint8Array(data.length / 4);
    for (let i = 0; i < data.length; i += 4) {
      if (data[i] !== data[i + 1] || data[i] !== data[i + 2] || data[i + 3] !== 255) return 'colour';
      greys[i / 4] = data[i];
    }
    const parts = [];
    for (let i = 0; i < greys.length; i += 1 << 13) parts.push(String.fromCharCode(...greys.subarray(i, i + (1 << 13))));
    return parts.join('');
  });
  return Buffer.from(text, 'latin1');
}

// What the console program shows at each tick. A tick that paints nothing leaves the picture before.
class Played {
  constructor(stream, ticks, name) {
    this.folder = at(`play-${name}`);
    fs.rmSync(this.folder, { recursive: true, force: true });
    sorvel('play', stream, this.folder, '--ticks', String(ticks));
    this.painted = new Set(fs.readdirSync(this.folder));
  }

  greys(tick) {
    let name;
    do name = `tick-${String(tick--).padStart(5, '0')}.pgm`; while (!this.painted.has(name));
    const bytes = fs.readFileSync(path.join(this.folder, name));
    const [, , width, height] = /^(P5)\s(\d+) (\d+)\s255\s/.exec(bytes.subarray(0, 40).toString('latin1'));
    return bytes.subarray(bytes.length - width * height);
  }
}
async function expectPicture(page, played, tick) {
  expectEqual(await tickOf(page), tick, 'the tick');
  const greys = await greysOf(page);
  expect(greys.equals(played.greys(tick)), `the picture of tick ${tick} differs`);
}

async function test(name, run) {
  const began = Date.now();
  const before = browser.contexts().length;
  try {
    await run();
    ++passed;
    console.log(`[       OK ] ${name} (${Date.now() - began} ms)`);
  } catch (error) {
    failures.push(name);
    console.log(`[  FAILED  ] ${name}: ${error.message} (${Date.now() - began} ms)`);
    const page = browser.contexts().at(-1)?.pages()[0];
    if (page) await page.screenshot({ path: at(`${name.replace(/\W+/g, '-')}.png`) }).catch(() => {});
  }
  for (const context of browser.contexts().slice(before)) await context.close();
}

function makeFilm() {
  fs.cpSync(path.join(samples, 'film'), at('film'), { recursive: true });
  sorvel('export', at('film/kasa.flm'), at('film.sv'));
  sorvel('web', at('film/kasa.flm'), at('film.html'));
}

async function main() {
  fs.mkdirSync(folder, { recursive: true });
  makeFilm();
  browser = await chromium.launch({ executablePath: '/usr/bin/chromium', args: ['--no-sandbox'] });
  const page = at('film.html');
  const film = new Played(at('film.sv'), 1400, 'film');

  await test('the page is little larger than its film', async () => {
    const most = 1.4 * fs.statSync(at('film.sv')).size + 100000;
    expect(fs.statSync(page).size <= most, `${fs.statSync(page).size} bytes, more than ${most}`);
  });

  await test('the first 100 ticks show the pictures of the program', async () => {
    const tab = await open(page, still);
    for (let tick = 0; tick < 100; ++tick) {
      await expectPicture(tab, film, tick);
      await press(tab, 'ArrowRight');
    }
    expectEqual(tab.errors.length, 0, 'errors');
  });

  await test('100 places of the time line show the pictures of the program', async () => {
    const tab = await open(page, still);
    for (let i = 0; i < 100; ++i) await expectPicture(tab, film, await seek(tab, (i * 37 % 100) / 99));
    expectEqual(tab.errors.length, 0, 'errors');
  });

  await test('steps back show the pictures of the program', async () => {
    const tab = await open(page, still);
    const tick = await seek(tab, 0.5);
    for (let i = 1; i <= 20; ++i) {
      await press(tab, 'ArrowLeft');
      await expectPicture(tab, film, tick - i);
    }
  });

  await test('the page asks nothing of the network', async () => {
    const tab = await open(page);
    await sleep(300);
    expectEqual(tab.requests.length, 1, 'requests');
    const writes = await tab.evaluate(() => document.documentElement.outerHTML.match(/https?:\/\//g)?.length ?? 0);
    expectEqual(writes, 0, 'addresses');
  });

  await test('a film starts by itself and keeps its time', async () => {
    const tab = await open(page);
    const ticks = await tab.evaluate(() => new Promise((done) => {
      const line = document.getElementById('timeline');
      const seen = [];
      const start = performance.now();
      const look = () => {
        seen.push([performance.now() - start, Number(line.getAttribute('aria-valuenow'))]);
        if (performance.now() - start < 2000) requestAnimationFrame(look);
        else done(seen);
      };
      look();
    }));
    const [[, from], [milliseconds, to]] = [ticks[0], ticks.at(-1)];
    const wanted = milliseconds / 1000 * 24;
    expect(Math.abs(to - from - wanted) < 4, `${to - from} ticks in ${milliseconds} ms`);
    expect(await isPlaying(tab), 'it stands');
  });

  await test('a film stands where the system asks for less motion', async () => {
    const tab = await open(page, still);
    await sleep(300);
    expect(!await isPlaying(tab), 'it plays');
    expectEqual(await tickOf(tab), 0, 'the tick');
  });

  await test('keys and buttons do what they say', async () => {
    const tab = await open(page, still);
    const length = await lengthOf(tab);
    await press(tab, 'End');
    expectEqual(await tickOf(tab), length - 1, 'End');
    await press(tab, 'Home');
    expectEqual(await tickOf(tab), 0, 'Home');
    await press(tab, 'PageDown');
    const second = await tickOf(tab);
    expect(second > 1, 'PageDown goes to the second cut');
    expectEqual(await tab.locator('#cut').textContent(), 'kasa002', 'the cut');
    await press(tab, 'PageUp');
    expectEqual(await tickOf(tab), 0, 'PageUp');
    await tab.locator('#forward').click();
    expectEqual(await tickOf(tab), 1, 'forward');
    await tab.locator('#back').click();
    expectEqual(await tickOf(tab), 0, 'back');
    await tab.locator('#picture').focus();
    const ways = { space: () => press(tab, ' '), k: () => press(tab, 'k'), button: () => tab.locator('#play').click(),
      picture: () => tab.locator('#stage').click() };
    for (const [way, start] of Object.entries(ways)) {
      await start();
      expect(await isPlaying(tab), `${way} does not play`);
      await start();
      expect(!await isPlaying(tab), `${way} does not stop`);
    }
    await press(tab, '+');
    expectEqual(await tab.locator('#speed').inputValue(), '2', 'faster');
    await press(tab, '-', 2);
    expectEqual(await tab.locator('#speed').inputValue(), '0.5', 'slower');
    await press(tab, 'l');
    expectEqual(await tab.locator('#loop').getAttribute('aria-pressed'), 'true', 'repeat');
    await press(tab, 'f');
    await tab.waitForFunction(() => document.fullscreenElement !== null);
    expectEqual(tab.errors.length, 0, 'errors');
  });

  await test('the end stops the film, and repeats it when asked', async () => {
    const tab = await open(page, still);
    const length = await lengthOf(tab);
    await press(tab, 'End');
    await press(tab, 'ArrowLeft', 5);
    await press(tab, ' ');
    await sleep(700);
    expectEqual(await tickOf(tab), length - 1, 'the tick at the end');
    expect(!await isPlaying(tab), 'it plays on');
    await press(tab, 'ArrowLeft', 5);
    await press(tab, 'l');
    await press(tab, ' ');
    await sleep(700);
    expect(await tickOf(tab) < 40 && await isPlaying(tab), 'it does not begin again');
  });

  await test('a finger plays, stops and drags', async () => {
    const tab = await open(page, { ...still, hasTouch: true, isMobile: true, viewport: { width: 390, height: 844 } });
    await tab.locator('#stage').tap();
    expect(await isPlaying(tab), 'a tap does not play');
    await tab.locator('#stage').tap();
    expect(!await isPlaying(tab), 'a tap does not stop');
    const bounds = await tab.locator('#timeline').boundingBox();
    await tab.touchscreen.tap(bounds.x + bounds.width / 2, bounds.y + bounds.height / 2);
    await sleep(100);
    const length = await lengthOf(tab);
    expect(Math.abs(await tickOf(tab) - length / 2) < length / 20, 'the time line is not in the middle');
    const overflow = await tab.evaluate(() => document.documentElement.scrollWidth - innerWidth);
    expect(overflow <= 0, `the page is ${overflow} pixels too wide`);
  });

  await test('everything has a name for a screen reader', async () => {
    const tab = await open(page, still);
    const unnamed = await tab.evaluate(() => [...document.querySelectorAll('button, [role=slider], [role=img], [role=group]')]
      .filter((each) => !each.getAttribute('aria-label')).map((each) => each.id));
    expectEqual(unnamed.join(), '', 'without a name');
    expect((await tab.locator('#timeline').getAttribute('aria-valuetext')).includes('kasa001'), 'the position has no text');
  });

  await test('random films show the pictures of the program', async () => {
    execFileSync(makeFilms, [folder, '8']);
    for (let i = 0; i < 8; ++i) {
      sorvel('web', at(`film-${i}.flm`), at(`film-${i}.html`));
      sorvel('export', at(`film-${i}.flm`), at(`film-${i}.sv`));
      const tab = await open(at(`film-${i}.html`), still);
      const length = await lengthOf(tab);
      const played = new Played(at(`film-${i}.sv`), Math.min(length, 3000), `film-${i}`);
      for (let tick = 0; tick < Math.min(length, 30); ++tick) {
        await expectPicture(tab, played, tick);
        await press(tab, 'ArrowRight');
      }
      for (let k = 0; k < 10; ++k) {
        const tick = await seek(tab, (k * 7 % 10) / 9);
        if (tick < 3000) await expectPicture(tab, played, tick);
      }
      expectEqual(tab.errors.length, 0, `errors in film ${i}`);
      await tab.context().close();
    }
  });

  await test('a tick of 960 by 720 pixels takes less than 2 ms, at 60 frames a second', async () => {
    // Two drawings that differ everywhere, and one that differs in a quarter of the picture.
    const pictures = [0, 1, 2].map((number) => {
      const name = at(`large-${number}.pgm`);
      const pixels = Buffer.alloc(960 * 720);
      for (let i = 0; i < pixels.length; ++i) {
        const isMoved = number === 1 || (number === 2 && i % 960 > 480 && i > 480 * 720);
        pixels[i] = [0, 85, 170, 255][(i >> 3) + (i % 960 >> 4) + (isMoved ? (i / 960 >> 3) : 0) & 3];
      }
      fs.writeFileSync(name, Buffer.concat([Buffer.from('P5 960 720 255\n'), pixels]));
      return name;
    });
    sorvel('import', at('large.cut'), '--fps', '60', ...pictures, ...pictures, ...pictures, ...pictures);
    sorvel('web', at('large.cut'), at('large.html'));
    const tab = await open(at('large.html'), still);
    const times = await tab.evaluate(async () => {
      const decoder = await WebAssembly.instantiate(
        Uint8Array.from(atob(document.getElementById('decoder').textContent), (letter) => letter.charCodeAt(0)),
        { wasi_snapshot_preview1: new Proxy({}, { get: () => () => 8 }) });
      const { exports } = decoder.instance;
      exports._initialize();
      const bytes = Uint8Array.from(atob(document.getElementById('stream').textContent), (letter) => letter.charCodeAt(0));
      const address = exports.allocate(bytes.length);
      new Uint8Array(exports.memory.buffer).set(bytes, address);
      exports.open();
      exports.follow(bytes.length);
      exports.seek(0, 0);
      const each = [];
      for (let i = 0; i < 300; ++i) {
        const start = performance.now();
        exports.advance(1);
        each.push(performance.now() - start);
      }
      return each.sort((a, b) => a - b);
    });
    const median = times[times.length / 2];
    console.log(`  a tick: ${median.toFixed(2)} ms, one in ten above ${times[270].toFixed(2)} ms`);
    expect(median < 2, `a tick takes ${median} ms`);
    await press(tab, 'l');
    await press(tab, ' ');
    const late = await tab.evaluate(() => new Promise((done) => {
      const moments = [];
      const look = (now) => {
        moments.push(now);
        if (moments.length < 121) return requestAnimationFrame(look);
        return done(moments.slice(1).filter((moment, i) => moment - moments[i] > 40).length);
      };
      requestAnimationFrame(look);
    }));
    console.log(`  frames of 120 that came late: ${late}`);
    expect(late < 12, `${late} of 120 frames were late`);
  });

  await test('a damaged film gives a sentence', async () => {
    const text = fs.readFileSync(page, 'latin1');
    const start = text.indexOf('id="stream">') + 12;
    const end = text.indexOf('</script>', start);
    const bytes = Buffer.from(text.slice(start, end), 'base64');
    const damages = [bytes.subarray(0, bytes.length / 2), Buffer.alloc(0), Buffer.alloc(3000, 0xFF)];
    for (let i = 0; i < 8; ++i) {
      const changed = Buffer.from(bytes);
      for (let k = 0; k < 4; ++k) changed[(i * 7919 + k * 104729 + (k ? 0 : i)) % (k ? changed.length : 60)] ^= 1 << i;
      damages.push(changed);
    }
    for (const [i, damaged] of damages.entries()) {
      fs.writeFileSync(at('damaged.html'), text.slice(0, start) + damaged.toString('base64') + text.slice(end), 'latin1');
      const tab = await open(at('damaged.html'));
      expect((await tab.locator('#message').textContent()).includes('壊れている'), `damage ${i} says nothing`);
      await press(tab, ' ');
      await press(tab, 'ArrowRight');
      expectEqual(tab.errors.length, 0, 'errors');
      await tab.context().close();
    }
  });

  await test('a linked film plays as it comes', async () => {
    sorvel('web', at('film/kasa.flm'), at('linked 1.html'), '--linked');
    const bytes = fs.readFileSync(at('linked 1.sv'));
    expect(bytes.equals(fs.readFileSync(at('film.sv'))), 'the film beside the page differs');
    let hasEnd = false;
    const server = http.createServer(async (request, answer) => {
      if (request.url.endsWith('.html')) return answer.end(fs.readFileSync(at('linked 1.html')));
      for (let i = 0; i < bytes.length; i += 1 << 18) {
        answer.write(bytes.subarray(i, i + (1 << 18)));
        await sleep(250);
      }
      hasEnd = true;
      return answer.end();
    }).listen(0);
    try {
      const tab = await open(`http://localhost:${server.address().port}/linked%201.html`);
      expect(!hasEnd, 'it waited for the end');
      await sleep(300);
      expect(await tickOf(tab) > 0, 'it does not play');
      await press(tab, 'k');
      while (!hasEnd) await sleep(100);
      await sleep(500);
      await expectPicture(tab, film, await seek(tab, 0.9));
      expectEqual(tab.errors.length, 0, 'errors');
      expectEqual(tab.requests.length, 2, 'requests');
    } finally {
      server.close();
    }
  });

  await test('the page looks right wide, narrow, dark and on a phone', async () => {
    for (const [name, options] of Object.entries({
      wide: { viewport: { width: 1600, height: 900 } }, narrow: { viewport: { width: 600, height: 800 } },
      dark: { colorScheme: 'dark' }, phone: { viewport: { width: 360, height: 740 }, deviceScaleFactor: 3, isMobile: true },
      flat: { viewport: { width: 740, height: 360 }, deviceScaleFactor: 3, isMobile: true },
    })) {
      const tab = await open(page, { ...still, ...options });
      await seek(tab, 0.3);
      await tab.screenshot({ path: at(`page-${name}.png`) });
      const outside = await tab.evaluate(() => [...document.querySelectorAll('canvas, button, select, #timeline')]
        .filter((each) => {
          const bounds = each.getBoundingClientRect();
          return bounds.left < 0 || bounds.top < 0 || bounds.right > innerWidth || bounds.bottom > innerHeight;
        }).map((each) => each.id));
      expectEqual(outside.join(), '', `outside of the page, ${name}`);
    }
  });

  await browser.close();
  console.log(`[  PASSED  ] ${passed} tests.`);
  if (failures.length > 0) console.log(` ${failures.length} FAILED TESTS`);
  process.exit(failures.length > 0 ? 1 : 0);
}

await main();
