// Draws each scanner's frames as they arrive over the WebSocket. Every message
// is one scanner's frame: a 16-byte header (version, scanner, flags, serial,
// point count, point rate) and 8 bytes a point (x, y, red, green, blue, flags),
// little-endian. x grows to the right and y downward, from -32768 to 32767.
"use strict";

const HEADER = 16, POINT = 8, LIT = 1, BLANKED = 1, SIZE = 512;
const tiles = new Map();  // scanner number -> tile
const showBlanked = document.getElementById("show-blanked");
const statusText = document.getElementById("status");

function element(tag, className, parent) {
  const e = document.createElement(tag);
  if (className) e.className = className;
  if (parent) parent.appendChild(e);
  return e;
}

// A tile per scanner, kept in scanner order.
function tileFor(scanner) {
  let tile = tiles.get(scanner);
  if (tile) return tile;
  const root = element("section", "tile");
  root.dataset.scanner = scanner;
  const canvas = element("canvas", null, root);
  canvas.width = canvas.height = SIZE;
  const label = element("div", "label", root);
  tile = {
    root, canvas, context: canvas.getContext("2d"),
    number: element("span", "number", label), fps: element("span", "fps", label),
    points: element("span", "points", label), serial: element("span", "serial", label),
    output: element("span", "output", label),
    frame: null, dirty: false, history: [],
  };
  tile.number.textContent = "Scanner " + scanner;
  tiles.set(scanner, tile);
  const main = document.getElementById("tiles");
  const after = [...main.children].find(c => Number(c.dataset.scanner) > scanner);
  main.insertBefore(root, after || null);
  document.getElementById("empty").hidden = true;
  return tile;
}

function receive(buffer) {
  const view = new DataView(buffer);
  if (buffer.byteLength < HEADER || view.getUint8(0) !== 1) return;
  const scanner = view.getUint8(1);
  const count = Math.min(view.getUint32(8, true), (buffer.byteLength - HEADER) / POINT | 0);
  const tile = tileFor(scanner);
  const serial = view.getUint32(4, true);
  tile.frame = { view, count, serial, lit: (view.getUint8(2) & LIT) !== 0 };
  tile.dirty = true;
  // Frames a second from the scanner's own counter, over the last second.
  const now = performance.now();
  tile.history.push([now, serial]);
  while (tile.history.length > 2 && now - tile.history[0][0] > 1000) tile.history.shift();
  const [t0, s0] = tile.history[0];
  tile.fps.textContent = (now > t0 ? ((serial - s0) * 1000 / (now - t0)) : 0).toFixed(0) + " fps";
  tile.points.textContent = count + " points";
  tile.serial.textContent = "frame " + serial;
  tile.output.textContent = tile.frame.lit ? "output on" : "output off";
  tile.output.className = "output " + (tile.frame.lit ? "on" : "off");
}

function draw(tile) {
  const { context: g } = tile;
  const { view, count, lit } = tile.frame;
  const scale = SIZE / 65536;
  g.fillStyle = "#000";
  g.fillRect(0, 0, SIZE, SIZE);
  g.globalAlpha = lit ? 1 : 0.3;  // a dark scanner's frame is shown dimmed
  g.lineWidth = 2;
  g.lineCap = "round";
  let px = 0, py = 0;
  for (let i = 0; i < count; ++i) {
    const at = HEADER + i * POINT;
    const x = (view.getInt16(at, true) + 32768) * scale, y = (view.getInt16(at + 2, true) + 32768) * scale;
    const blanked = (view.getUint8(at + 7) & BLANKED) !== 0;
    if (i > 0 && (!blanked || showBlanked.checked)) {
      // A segment takes the colour of the point it arrives at.
      g.setLineDash(blanked ? [2, 4] : []);
      g.strokeStyle = blanked ? "#666" :
        `rgb(${view.getUint8(at + 4)},${view.getUint8(at + 5)},${view.getUint8(at + 6)})`;
      g.beginPath();
      g.moveTo(px, py);
      g.lineTo(x, y);
      g.stroke();
    }
    px = x;
    py = y;
  }
  g.setLineDash([]);
  g.globalAlpha = 1;
}

function paint() {
  for (const tile of tiles.values()) {
    if (tile.dirty && tile.frame) {
      draw(tile);
      tile.dirty = false;
    }
  }
  requestAnimationFrame(paint);
}

function connect() {
  const socket = new WebSocket(`ws://${location.host}/frames`);
  socket.binaryType = "arraybuffer";
  socket.onopen = () => { statusText.textContent = "live"; };
  socket.onmessage = e => receive(e.data);
  socket.onclose = () => {
    statusText.textContent = "disconnected, retrying…";
    setTimeout(connect, 1000);
  };
}

showBlanked.addEventListener("change", () => { for (const t of tiles.values()) t.dirty = true; });
requestAnimationFrame(paint);
connect();
