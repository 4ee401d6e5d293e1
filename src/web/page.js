'use strict';
(async () => {
  const byId = (id) => document.getElementById(id);
  const info = JSON.parse(byId('film').textContent);
  const isJapanese = (navigator.language || 'ja').startsWith('ja');
  const text = isJapanese ? {
    play: '再生 (スペース)', pause: '一時停止 (スペース)', back: '1コマ戻る (←)', forward: '1コマ進む (→)', loop: '繰り返し (L)',
    full: '全画面 (F)', speed: '速度', timeline: '再生位置', cut: 'カット', controls: '再生の操作', by: '作',
    damaged: 'この作品のデータは壊れているため、再生できません。', memory: 'メモリが足りないため、再生できません。',
    missing: (name) => `${name} を読み込めませんでした。ページと同じ場所に置き、ウェブサーバーから開いてください。`,
  } : {
    play: 'Play (Space)', pause: 'Pause (Space)', back: 'One tick back (←)', forward: 'One tick forward (→)',
    loop: 'Repeat (L)', full: 'Full screen (F)', speed: 'Speed', timeline: 'Position', cut: 'Cut', controls: 'Playback',
    by: 'by', damaged: "This film can't be played: its data is damaged.",
    memory: "This film can't be played: there isn't enough memory.",
    missing: (name) => `${name} couldn't be loaded. It belongs beside this page, and both on a web server.`,
  };
  const root = byId('player');
  const canvas = byId('picture');
  const timeline = byId('timeline');
  document.documentElement.lang = isJapanese ? 'ja' : 'en';
  byId('title').textContent = info.title;
  byId('author').textContent = info.author;
  canvas.setAttribute('aria-label', info.title);
  byId('controls').setAttribute('aria-label', text.controls);
  byId('speed-label').firstChild.textContent = text.speed;
  timeline.setAttribute('aria-label', text.timeline);
  for (const id of ['back', 'forward', 'loop', 'full']) label(id, text[id]);

  function label(id, words) {
    byId(id).title = words;
    byId(id).setAttribute('aria-label', words);
  }

  let isBroken = false;
  function fail(words) {
    isBroken = true;
    root.classList.remove('is-playing');
    byId('message').textContent = words;
    byId('message').hidden = false;
    byId('controls').hidden = true;
  }

  function bytesOf(base64) {
    const letters = atob(base64.trim());
    const bytes = new Uint8Array(letters.length);
    for (let i = 0; i < bytes.length; ++i) bytes[i] = letters.charCodeAt(i);
    return bytes;
  }

  // What C's library asks of a system isn't there: nothing is printed, and no file is open.
  const kBadFile = 8;
  const system = new Proxy({}, { get: () => () => kBadFile });
  let decoder;
  let memory;
  try {
    const made = await WebAssembly.instantiate(bytesOf(byId('decoder').textContent), { wasi_snapshot_preview1: system });
    decoder = made.instance.exports;
    memory = decoder.memory;
    decoder._initialize();
  } catch {
    return fail(text.memory);
  }

  // The cuts as the page knows them, with the second and the tick at which each begins.
  const cuts = [];
  let length = 0;  // in ticks
  let duration = 0;  // in seconds
  for (const { name, ticks, fps } of info.cuts) {
    cuts.push({ name, ticks, fps, start: length, time: duration });
    length += ticks;
    duration += ticks / fps;
  }
  let shown = -1;  // the tick on the canvas
  let clock = 0;  // the time of the film in seconds
  let isPlaying = false;
  let isLooping = false;
  let speed = 1;
  let canPlay = 0;  // so many ticks
  let context;

  const cutAt = (tick) => cuts.findLastIndex((cut) => cut.start <= tick);
  function tickAt(time) {
    const cut = cuts.findLast((each) => each.time <= time) ?? cuts[0];
    // A time that is a tick's own in binary fractions may lie a hair before it.
    return Math.min(cut.start + Math.floor((time - cut.time) * cut.fps + 1e-6), cut.start + cut.ticks - 1);
  }
  function timeOf(tick) {
    const cut = cuts[cutAt(tick)];
    return cut.time + (tick - cut.start) / cut.fps;
  }

  // Brings the picture of a tick on the canvas: on from the one that is there, or from the start of its cut.
  function show(tick) {
    if (tick === shown || isBroken) return;
    const index = cutAt(tick);
    const inCut = tick - cuts[index].start;
    try {
      if (shown >= 0 && tick > shown && tick - shown <= inCut + 1) {
        decoder.advance(tick - shown);
      } else {
        decoder.seek(index, inCut);
      }
    } catch {
      return fail(text.damaged);
    }
    shown = tick;
    const width = decoder.width();
    const height = decoder.height();
    context.putImageData(new ImageData(new Uint8ClampedArray(memory.buffer, decoder.picture(), width * height * 4), width,
      height), 0, 0);
    tell();
  }

  const clockText = (seconds) => `${Math.floor(seconds / 60)}:${(seconds % 60).toFixed(1).padStart(4, '0')}`;
  const cutText = (index) => (cuts.length > 1 || cuts[index].name ? cuts[index].name || `${text.cut} ${index + 1}` : '');
  function tell() {
    const part = length > 1 ? shown / (length - 1) : 1;
    byId('played').style.width = byId('knob').style.left = `${part * 100}%`;
    const time = `${clockText(timeOf(shown))} / ${clockText(duration)}`;
    byId('time').textContent = time;
    byId('cut').textContent = cutText(cutAt(shown));
    timeline.setAttribute('aria-valuenow', shown);
    timeline.setAttribute('aria-valuetext', `${time} ${cutText(cutAt(shown))}`);
  }

  function go(tick) {
    tick = Math.max(0, Math.min(tick, canPlay - 1));
    clock = timeOf(tick);
    show(tick);
  }
  function setPlaying(plays) {
    if (plays && !isBroken && shown === length - 1) go(0);
    isPlaying = plays && !isBroken;
    root.classList.toggle('is-playing', isPlaying);
    label('play', isPlaying ? text.pause : text.play);
    if (isPlaying) requestAnimationFrame(start);
  }
  let last = 0;
  function start(now) {
    last = now;
    requestAnimationFrame(run);
  }
  function run(now) {
    if (!isPlaying) return;
    const next = clock + Math.max(now - last, 0) / 1000 * speed;
    last = now;
    if (canPlay < length && next >= timeOf(canPlay - 1)) {
      // The film waits for its stream.
    } else if (next < duration) {
      clock = next;
      show(tickAt(clock));
    } else if (isLooping) {
      clock = next % duration;
      show(tickAt(clock));
    } else {
      go(length - 1);
      setPlaying(false);
    }
    requestAnimationFrame(run);
  }
  function step(ticks) {
    setPlaying(false);
    go(shown + ticks);
  }
  function goToCut(direction) {
    const index = cutAt(shown);
    // The first moments of a cut count as its start, so that two presses reach the cut before.
    const isAtStart = timeOf(shown) - cuts[index].time < 0.5;
    go(cuts[Math.max(0, Math.min(index + (direction < 0 && !isAtStart ? 0 : direction), cuts.length - 1))].start);
  }
  function setSpeed(value) {
    speed = Number(value);
    byId('speed').value = value;
  }
  function setLooping(loops) {
    isLooping = loops;
    byId('loop').setAttribute('aria-pressed', loops);
  }
  function switchFullScreen() {
    if (document.fullscreenElement) document.exitFullscreen();
    else if (root.requestFullscreen) root.requestFullscreen().catch(() => {});
  }

  function fit() {
    const stage = byId('stage');
    const pixel = window.devicePixelRatio || 1;
    const most = Math.min(stage.clientWidth * pixel / canvas.width, stage.clientHeight * pixel / canvas.height);
    // Whole multiples of a pixel are crisp. Where they would leave much of the page empty, the picture is smoothed.
    const isCrisp = Math.floor(most) > 0.7 * most;
    const scale = (isCrisp ? Math.floor(most) : most) / pixel;
    canvas.style.imageRendering = isCrisp ? 'pixelated' : 'auto';
    canvas.style.width = `${canvas.width * scale}px`;
    canvas.style.height = `${canvas.height * scale}px`;
  }

  function connect() {
    for (const option of byId('speed').options) {
      option.value = option.textContent;
      option.textContent = `${option.value}×`;
    }
    byId('play').onclick = () => setPlaying(!isPlaying);
    byId('stage').onclick = () => setPlaying(!isPlaying);
    byId('back').onclick = () => step(-1);
    byId('forward').onclick = () => step(1);
    byId('loop').onclick = () => setLooping(!isLooping);
    byId('full').onclick = switchFullScreen;
    byId('speed').onchange = () => setSpeed(byId('speed').value);
    const speeds = [...byId('speed').options].map((option) => option.value);
    const keys = {
      ' ': () => setPlaying(!isPlaying), k: () => setPlaying(!isPlaying),
      ArrowLeft: () => step(-1), ArrowRight: () => step(1), ',': () => step(-1), '.': () => step(1),
      Home: () => go(0), End: () => go(length - 1), PageUp: () => goToCut(-1), PageDown: () => goToCut(1),
      l: () => setLooping(!isLooping), f: switchFullScreen,
      '-': () => setSpeed(speeds[Math.max(speeds.indexOf(String(speed)) - 1, 0)]),
      '+': () => setSpeed(speeds[Math.min(speeds.indexOf(String(speed)) + 1, speeds.length - 1)]),
    };
    addEventListener('keydown', (event) => {
      const isOwn = event.ctrlKey || event.altKey || event.metaKey || event.target.tagName === 'SELECT' ||
        (event.key === ' ' && event.target.tagName === 'BUTTON');
      const key = event.key.length === 1 ? event.key.toLowerCase() : event.key;
      if (isOwn || isBroken || !keys[key]) return;
      event.preventDefault();
      keys[key]();
    });

    const tickUnder = (event) => {
      const bounds = timeline.getBoundingClientRect();
      const part = Math.max(0, Math.min((event.clientX - bounds.left) / bounds.width, 1));
      return Math.round(part * (length - 1));
    };
    const tip = byId('tip');
    const showTip = (event) => {
      const tick = tickUnder(event);
      tip.hidden = false;
      tip.textContent = `${clockText(timeOf(tick))} ${cutText(cutAt(tick))}`;
      tip.style.left = `${tick / Math.max(length - 1, 1) * 100}%`;
    };
    let isDragging = false;
    let wanted = -1;
    const drag = (event) => {
      // One picture a frame, however many events come.
      if (wanted < 0) requestAnimationFrame(() => { go(wanted); wanted = -1; });
      wanted = tickUnder(event);
    };
    timeline.addEventListener('pointerdown', (event) => {
      isDragging = true;
      timeline.setPointerCapture(event.pointerId);
      drag(event);
    });
    timeline.addEventListener('pointermove', (event) => {
      showTip(event);
      if (isDragging) drag(event);
    });
    for (const end of ['pointerup', 'pointercancel']) timeline.addEventListener(end, () => { isDragging = false; });
    timeline.addEventListener('pointerleave', () => { tip.hidden = true; });
    addEventListener('resize', fit);
    document.addEventListener('fullscreenchange', fit);
    // A hidden page gets no frames. Its film goes on where it was.
    document.addEventListener('visibilitychange', () => { if (isPlaying) requestAnimationFrame((now) => { last = now; }); });
    timeline.setAttribute('aria-valuemax', length - 1);
    for (const cut of cuts.slice(1)) {
      const mark = document.createElement('i');
      mark.style.left = `${cut.start / Math.max(length - 1, 1) * 100}%`;
      byId('marks').append(mark);
    }
  }

  // Counts the ticks that can be played of what has arrived.
  function follow(received) {
    const count = decoder.follow(received);
    canPlay = 0;
    for (let i = 0; i < count; ++i) canPlay += Math.min(decoder.cutTicks(i), cuts[i]?.ticks ?? 0);
    byId('arrived').style.width = `${canPlay / length * 100}%`;
  }
  function begin() {
    if (decoder.open() === 0 || cuts.length === 0 || decoder.cutCount() < cuts.length) return fail(text.damaged);
    canvas.width = decoder.width();
    canvas.height = decoder.height();
    context = canvas.getContext('2d', { alpha: false });
    connect();
    fit();
    setSpeed('1');
    setPlaying(false);
    return undefined;
  }
  // A film that can be looked at starts by itself, unless the system asks for less motion.
  function welcome() {
    if (isBroken || shown >= 0 || canPlay < 1) return;
    go(0);
    if (!matchMedia('(prefers-reduced-motion: reduce)').matches) setPlaying(true);
  }
  function finish(size) {
    follow(size);
    if (decoder.check() === 0) fail(text.damaged);
  }
  function place(size) {
    const address = decoder.allocate(size);
    if (address === 0) fail(text.memory);
    return address;
  }

  // The film lies in the page, or beside it.
  async function load() {
    if (!info.source) {
      const bytes = bytesOf(byId('stream').textContent);
      if (bytes.length === 0) return fail(text.damaged);
      const address = place(bytes.length);
      if (isBroken) return undefined;
      new Uint8Array(memory.buffer).set(bytes, address);
      begin();
      if (!isBroken) finish(bytes.length);
      return welcome();
    }
    const answer = await fetch(info.source);
    if (!answer.ok) throw new Error(answer.status);
    const address = place(info.size);
    let received = 0;
    // The head with its two texts and the places of all cuts.
    const head = Math.min(info.size, 1024 + 4 * cuts.length);
    const reader = answer.body.getReader();
    while (!isBroken) {
      const { done, value } = await reader.read();
      if (done) break;
      if (received + value.length > info.size) return fail(text.damaged);
      new Uint8Array(memory.buffer).set(value, address + received);
      const before = received;
      received += value.length;
      if (before < head && received >= head) begin();
      if (!isBroken && received >= head) follow(received);
      welcome();
    }
    if (!isBroken && received < info.size) fail(text.damaged);
    return isBroken ? undefined : finish(received);
  }
  try {
    await load();
  } catch {
    fail(info.source ? text.missing(info.source) : text.damaged);
  }
})();
