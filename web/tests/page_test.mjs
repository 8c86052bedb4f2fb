// The page in headless Chromium, from file://: drawing, dragging, files, undo, link, downloads, keys, dark and
// light, phone.  A script error, a message on the console or a request of anything but the page fails the test.
import assert from "node:assert/strict";
import { createServer } from "node:http";
import { mkdtempSync, readFileSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, test } from "node:test";
import { fileURLToPath } from "node:url";
import { closeBrowser, Opened, pageAddress, toolAnswers, wktOf } from "./support.mjs";

after(closeBrowser);

/** A test on a page of its own; what it must not do is counted. */
function onPage(name, settings, body) {
  test(name, async () => {
    const opened = await Opened.at(settings.address ?? pageAddress, settings);
    try {
      await body(opened, opened.page);
      assert.deepEqual(opened.faults, settings.faults ?? []);
    } finally {
      await opened.close();
    }
  });
}

/** The table's numbers are those of the native tool for the drawing as it is. */
async function assertMeasured(opened) {
  const [native] = toolAnswers(["describe"], `${wktOf(await opened.drawing())}\n`);
  for (const name of ["area", "perimeter", "length", "circularity", "solidity", "feret_max", "feret_min", "enclosing_circle_radius",
    "rectangle_length", "ellipse_a", "moment_20", "hu_1", "holes", "points"]) {
    assert.equal(await opened.measure(name), String(native[name]), name);
  }
  assert.equal(await opened.measure("centre"), native.centre.join(" "));
}

const empty = async (opened) => {
  await opened.page.click("#clear");
  await opened.settled();
};
const square = async (opened, x = 100, y = 60, size = 120) => {
  await opened.page.click("#outline");
  for (const [px, py] of [[x, y], [x + size, y], [x + size, y + size], [x, y + size], [x, y]]) await opened.click(px, py);
  await opened.settled();
};

onPage("the plate is there at once, with the native library's numbers", { offline: true }, async (opened, page) => {
  assert.equal((await opened.drawing())[0].length, 2);
  await assertMeasured(opened);
  await opened.settled();
  assert.match(await opened.text("#problems-head"), /nothing is wrong/);
  assert.ok(Number(await opened.measure("inscribed_circle_radius")) > 20);
  assert.equal(await page.isHidden("#repair-panel"), true);
});

onPage("an outline is drawn by presses and closed at its first vertex", {}, async (opened) => {
  await empty(opened);
  assert.equal(await opened.measure("area"), "");
  await square(opened);
  const [[ring]] = await opened.drawing();
  assert.equal(ring.length, 8);
  assert.ok(Math.abs(Number(await opened.measure("area")) - 14400) < 500);
  await assertMeasured(opened);
});

onPage("a line by hand closes when the button is let go", {}, async (opened, page) => {
  await empty(opened);
  await page.click("#outline");
  await page.mouse.move(...(await opened.at(200, 50)));
  await page.mouse.down();
  for (let i = 1; i <= 40; ++i) await page.mouse.move(...(await opened.at(200 + 90 * Math.sin(i * 0.15), 140 - 90 * Math.cos(i * 0.15))));
  await page.mouse.up();
  await opened.settled();
  const [[ring]] = await opened.drawing();
  assert.ok(ring.length / 2 >= 30, `${ring.length / 2} vertices`);
  const area = Number(await opened.measure("area"));
  assert.ok(area > 23000 && area < 27000, `area ${area}`);
});

onPage("Escape drops what is being drawn, Enter and a double press close it", {}, async (opened, page) => {
  const before = await opened.drawing();
  await page.keyboard.press("n");
  for (const at of [[50, 50], [150, 50], [150, 150]]) await opened.click(...at);
  await page.keyboard.press("Escape");
  await opened.settled();
  assert.deepEqual(await opened.drawing(), before);
  await page.keyboard.press("n");
  for (const at of [[50, 50], [150, 50], [150, 150]]) await opened.click(...at);
  await page.keyboard.press("Enter");
  await opened.settled();
  assert.equal((await opened.drawing())[0][0].length, 6);
  await page.click("#outline");
  for (const at of [[50, 50], [190, 50]]) await opened.click(...at);
  await page.mouse.dblclick(...(await opened.at(120, 150)));
  await opened.settled();
  assert.equal((await opened.drawing())[0][0].length, 6);
});

onPage("a hole is drawn into the part that holds its first vertex", {}, async (opened, page) => {
  await page.click("#hole");
  for (const at of [[80, 80], [120, 80], [120, 120], [80, 80]]) await opened.click(...at);
  await opened.settled();
  assert.equal((await opened.drawing())[0].length, 3);
  assert.equal(await opened.measure("holes"), "2");
  await assertMeasured(opened);
});

onPage("a vertex, an edge and the whole are dragged, and the numbers follow", {}, async (opened, page) => {
  const [[before]] = await opened.drawing();
  await opened.drag([360, 60], [390, 20]);
  let [[ring]] = await opened.drawing();
  assert.ok(Math.abs(ring[8] - 360) < 0.01 + 360 && Math.abs(ring[6] - 390) < 1 && Math.abs(ring[7] - 20) < 1, ring.join());
  assert.equal(ring.filter((v, i) => v !== before[i]).length, 2);
  await assertMeasured(opened);
  await opened.drag([40, 150], [25, 150]);
  [[ring]] = await opened.drawing();
  assert.ok(Math.abs(ring[0] - 25) < 1 && Math.abs(ring[ring.length - 2] - 25) < 1, "both ends of the edge moved");
  const area = await opened.measure("area");
  await opened.drag([100, 200], [110, 190]);
  [[ring]] = await opened.drawing();
  assert.ok(Math.abs(ring[0] - 35) < 1.5);
  assert.ok(Math.abs(Number(await opened.measure("area")) - Number(area)) < 1e-6);
  await assertMeasured(opened);
  assert.equal(await page.isEnabled("#undo"), true);
});

onPage("numbers move while a vertex is being dragged, before it is let go", {}, async (opened, page) => {
  await page.mouse.move(...(await opened.at(340, 260)));
  await page.mouse.down();
  const seen = new Set();
  for (let i = 1; i <= 5; ++i) {
    await page.mouse.move(...(await opened.at(340 + 8 * i, 260 + 3 * i)));
    await opened.settled();
    seen.add(await opened.measure("area"));
  }
  await page.mouse.up();
  assert.equal(seen.size, 5);
});

onPage("undo and redo go through 200 changes, a drag being one", {}, async (opened, page) => {
  const first = await opened.drawing();
  await opened.drag([360, 60], [380, 30]);
  const second = await opened.drawing();
  await page.keyboard.press("Control+z");
  await opened.settled();
  assert.deepEqual(await opened.drawing(), first);
  await page.keyboard.press("Control+Shift+Z");
  await opened.settled();
  assert.deepEqual(await opened.drawing(), second);
  await page.focus("#canvas");
  await page.keyboard.press(".");
  for (let i = 0; i < 205; ++i) await page.keyboard.press("ArrowLeft");
  for (let i = 0; i < 210; ++i) await page.keyboard.press("Control+z");
  await opened.settled();
  assert.equal(await page.isEnabled("#undo"), false);
  const [[ring]] = await opened.drawing();
  assert.ok(Math.abs(ring[0] - (second[0][0][0] - 5 * 1)) < 1e-6, `the oldest five are gone: ${ring[0]}`);
  await page.click("#redo");
  await opened.settled();
  assert.equal((await opened.drawing())[0][0][0], ring[0] - 1);
});

onPage("the cursor is told inside, outside and how far, with the nearest place", {}, async (opened, page) => {
  const where = async (x, y) => {
    await page.mouse.move(...(await opened.at(x, y)));
    await opened.settled();
    const distance = await page.getAttribute("#place", "data-signed-distance");
    return [await page.getAttribute("#place", "class"), Number(distance), await opened.text("#place")];
  };
  const inside = await where(60, 150);
  assert.equal(inside[0], "inside");
  assert.ok(Math.abs(inside[1] + 20) < 0.5);
  assert.match(inside[2], /nearest 40, 1(49|50).*outline, edge 0/);
  const hole = await where(285, 150);
  assert.equal(hole[0], "outside");
  assert.match(hole[2], /hole 1/);
  await page.mouse.move(5, 5);
  await opened.settled();
  assert.match(await opened.text("#place"), /Point at the picture/);
});

onPage("a crossing is told in red, with its sentence; repairs stand side by side and can be taken", {}, async (opened, page) => {
  await opened.sample("Bow tie (crosses itself)");
  assert.match(await opened.text("#problems"), /edges 0 and 2 of the outline cross at \(200, 150\)/);
  assert.equal(await page.getAttribute("#problems-head", "class"), "bad");
  const cards = await page.$$eval(".repair", (all) => all.map((card) => [card.dataset.name, card.querySelector(".area")?.title]));
  assert.deepEqual(cards.map(([name]) => name), ["regularized", "outer hull", "even-odd", "non-zero", "positive", "outer"]);
  const native = toolAnswers(["repair", "--rule", "even-odd", "--report"], `${wktOf(await opened.drawing())}\n`)[0];
  assert.equal(cards[2][1], String(native.area_after));
  assert.equal(cards[4][1], String(native.area_after / 2), "one half runs counter-clockwise");
  await page.click('.repair[data-name="even-odd"] button');
  await opened.settled();
  assert.match(await opened.text("#problems-head"), /nothing is wrong/);
  assert.equal(await opened.measure("parts"), "2");
  assert.equal(await page.isHidden("#repair-panel"), true);
});

onPage("an edge that is dragged across makes problems, and back none", {}, async (opened) => {
  await opened.drag([40, 150], [380, 150]);
  assert.match(await opened.text("#problems-head"), /problems?/);
  assert.ok((await opened.page.$$(".problem")).length > 0);
  await opened.page.click("#undo");
  await opened.settled();
  assert.match(await opened.text("#problems-head"), /nothing is wrong/);
});

onPage("the deviation from a golden outline is shown with its legend", {}, async (opened, page) => {
  await page.click("#golden");
  await opened.settled();
  assert.equal(await page.getAttribute('#deviation [data-name="hausdorff"]', "title"), "0");
  await opened.drag([360, 240], [375, 250]);
  const max = Number(await page.getAttribute('#deviation [data-name="deviation_max"]', "title"));
  assert.ok(max > 17 && max < 19, `burr of ${max}`);
  assert.match(await opened.text("#legend-high"), /^\+1?\d/);
  await page.fill("#tolerance", "5");
  await opened.settled();
  const share = Number(await page.getAttribute('#deviation [data-name="out_of_tolerance"]', "title"));
  assert.ok(share > 0 && share < 0.2);
  assert.equal(await opened.text("#legend-high"), "+5");
  await page.click("#golden-off");
  await opened.settled();
  assert.equal(await page.isHidden("#golden-panel"), true);
});

onPage("layers are switched on and off, and an SVG has what is shown", {}, async (opened, page) => {
  const before = await opened.downloaded("#svg");
  for (const layer of ["hull", "circle", "rectangle", "ellipse", "feret", "inscribed", "wall"]) await page.click(`[data-layer="${layer}"]`);
  await opened.settled();
  const svg = await opened.downloaded("#svg");
  assert.equal(svg.match(/<ellipse/g).length, 3);
  assert.ok(svg.match(/<path/g).length >= before.match(/<path/g).length + 5);
  assert.ok(svg.includes(`rx="${await opened.measure("enclosing_circle_radius")}"`));
  await page.click('[data-layer="circle"]');
  await opened.settled();
  assert.equal((await opened.downloaded("#svg")).match(/<ellipse/g).length, 2);
});

onPage("WKT that is downloaded is the drawing, digit by digit", {}, async (opened) => {
  await opened.drag([360, 60], [371, 33]);
  assert.equal((await opened.downloaded("#wkt")).trim(), wktOf(await opened.drawing()));
});

onPage("files: WKT, GeoJSON, CSV and broken ones", {}, async (opened, page) => {
  await opened.file("two.wkt", "POLYGON ((0 0, 40 0, 40 30, 0 30))\nPOINT (1 x)\nPOLYGON ((50 0, 54 0, 50 3))\n");
  assert.equal(await opened.measure("area"), "1200");
  assert.equal((await page.$$("#records li")).length, 2);
  assert.match(await opened.text("#file-errors"), /record 2, byte 44: number expected, found 'x'/);
  await page.click("#records li:nth-child(2) button");
  await opened.settled();
  assert.equal(await opened.measure("area"), "6");
  await opened.file("one.geojson", '{"type":"Feature","id":"ring","geometry":{"type":"Polygon","coordinates":[[[0,0],[8,0],[8,8],[0,0]]]}}');
  assert.equal(await opened.measure("area"), "32");
  assert.equal(await page.isHidden("#file-errors-panel"), true);
  await opened.file("points.csv", "id,x,y\na,0,0\na,3,0\na,0,3\nb,0,0\nb,5,0\nb,0,5\n");
  await opened.file("line.wkt", "LINESTRING (0 0, 3 4, 6 0)");
  assert.deepEqual([await opened.measure("length"), await opened.measure("area")], ["10", "NaN"]);
  assert.match(await opened.text("#status"), /open line/);
  await opened.file("points.csv", "id,x,y\na,0,0\na,3,0\na,0,3\nb,0,0\nb,5,0\nb,0,5\n");
  assert.deepEqual(await page.$$eval("#records li span:first-child", (all) => all.map((s) => s.textContent)), ["a", "b"]);
  await page.fill("#search", "B");
  assert.equal((await page.$$("#records li")).length, 1);
  await opened.file("no.txt", "\u001f\u008b");
  assert.equal(await page.isVisible("#message"), true);
  assert.equal(await opened.measure("area"), "4.5", "the drawing stays");
});

onPage("a file is dropped, a text is pasted, markup in it stays text", {}, async (opened, page) => {
  const drop = (name, text) => page.evaluate(([n, t]) => {
    const data = new DataTransfer();
    data.items.add(new File([t], n));
    document.body.dispatchEvent(new DragEvent("drop", { dataTransfer: data, bubbles: true, cancelable: true }));
  }, [name, text]);
  await drop("x.jsonl", '{"id":"<img src=x onerror=alert(1)>","type":"region","rings":[[[0,0],[6,0],[0,6]]]}\n{"id":"b","type":"region","rings":[[[0,0],[2,0],[0,2]]]}\n');
  await opened.settled();
  await page.waitForFunction(() => document.querySelectorAll("#records li").length === 2);
  assert.equal(await page.$("#records img"), null);
  assert.match(await opened.text("#records"), /<img src=x/);
  await page.evaluate(() => {
    const data = new DataTransfer();
    data.setData("text/plain", "POLYGON ((0 0, 10 0, 10 10, 0 10))");
    document.dispatchEvent(new ClipboardEvent("paste", { clipboardData: data }));
  });
  await opened.settled();
  assert.equal(await opened.measure("area"), "100");
});

onPage("the link gives the drawing, the golden outline and the direction of y back", {}, async (opened, page) => {
  await opened.drag([360, 60], [371.3, 33.7]);
  await page.click("#golden");
  await opened.drag([360, 240], [377, 251]);
  await page.check("#y-up");
  await page.waitForFunction(() => location.hash.startsWith("#v=1&y=up"));
  const [address, drawing] = [page.url(), await opened.drawing()];
  const golden = await page.evaluate(() => globalThis.gxshapePage.state.golden.parts.map((p) => p.map((r) => Array.from(r))));
  const again = await Opened.at(address);
  await again.settled();
  assert.deepEqual(await again.drawing(), drawing);
  assert.deepEqual(await again.page.evaluate(() => globalThis.gxshapePage.state.golden.parts.map((p) => p.map((r) => Array.from(r)))), golden);
  assert.equal(await again.page.isChecked("#y-up"), true);
  assert.deepEqual(again.faults, []);
  await again.close();
});

for (const [what, hash, says] of [
  ["of an unknown version", "#v=9&s=abc", /version '9'/],
  ["with changed characters", "#v=1&y=down&s=!!!!", /broken/],
  ["that was cut", "#v=1&y=down&s=M1Aw", /broken|coordinate/],
]) {
  onPage(`a link ${what} is told, and the page is empty`, { address: pageAddress + hash }, async (opened, page) => {
    await opened.settled();
    assert.match(await opened.text("#message-text"), says);
    assert.deepEqual(await opened.drawing(), []);
    assert.equal(await page.isVisible("#empty-hint"), true);
  });
}

onPage("the keyboard alone: a vertex is chosen, moved, split, removed", {}, async (opened, page) => {
  await page.focus("#canvas");
  await page.keyboard.press(".");
  await page.keyboard.press("ArrowRight");
  await page.keyboard.press("Shift+ArrowDown");
  await opened.settled();
  const [[ring]] = await opened.drawing();
  const step = await page.evaluate(() => globalThis.gxshapePage.view.keyStep);
  assert.deepEqual(ring.slice(0, 2), [40 + step, 60 + 10 * step]);
  await page.waitForFunction(() => /vertex 1/.test(document.getElementById("live").textContent));
  await page.keyboard.press("Insert");
  await opened.settled();
  assert.equal((await opened.drawing())[0][0].length, ring.length + 2);
  await page.keyboard.press("Delete");
  await opened.settled();
  assert.deepEqual((await opened.drawing())[0][0], ring);
  await page.keyboard.press(",");
  await page.keyboard.press(",");
  await page.keyboard.press("ArrowLeft");
  await opened.settled();
  const last = (await opened.drawing())[0];
  assert.notDeepEqual(last[1], (await opened.drawing())[0][0]);
  await page.keyboard.press("?");
  assert.equal(await page.isVisible("#help-dialog"), true);
  await page.keyboard.press("Escape");
  assert.equal(await page.isVisible("#help-dialog"), false);
});

onPage("every control can be reached with Tab, and none holds the focus", {}, async (opened, page) => {
  const seen = new Set();
  await page.click("h1");
  for (let i = 0; i < 80; ++i) {
    await page.keyboard.press("Tab");
    seen.add(await page.evaluate(() => document.activeElement.id || document.activeElement.dataset.layer || document.activeElement.dataset.language));
  }
  for (const id of ["help", "outline", "hole", "canvas", "hull", "samples", "open", "link", "svg", "wkt", "golden", "degrees", "python"]) {
    assert.ok(seen.has(id), `${id} is not reached`);
  }
});

onPage("degrees and all digits change what is shown, and not the numbers", {}, async (opened, page) => {
  await opened.settled();
  const [shown, digits] = [await opened.text('[data-name="feret_max_angle"]'), await opened.measure("feret_max_angle")];
  await page.check("#degrees");
  await opened.settled();
  const degrees = Number((await opened.text('[data-name="feret_max_angle"]')).replace("−", "-"));
  assert.ok(Math.abs(degrees - (Number(digits) * 180) / Math.PI) < 1e-3 * Math.abs(degrees), `${shown} rad, ${degrees}°`);
  assert.equal(await opened.measure("feret_max_angle"), digits);
  await page.check("#digits");
  await opened.settled();
  assert.equal(await opened.text('[data-name="circularity"]'), await opened.measure("circularity"));
});

onPage("the wheel zooms about the cursor, and a drag beside the shape moves the view", {}, async (opened, page) => {
  const at = await opened.at(360, 60);
  await page.mouse.move(...at);
  await page.mouse.wheel(0, -300);
  await opened.settled();
  const after_ = await opened.at(360, 60);
  // The wheel's place comes in whole pixels.
  assert.ok(Math.hypot(at[0] - after_[0], at[1] - after_[1]) < 1);
  const before = await opened.drawing();
  const scale = await page.evaluate(() => globalThis.gxshapePage.view.scale);
  await page.keyboard.press("0");
  assert.ok((await page.evaluate(() => globalThis.gxshapePage.view.scale)) < scale);
  await opened.drag([10, 20], [30, 40]);
  assert.deepEqual(await opened.drawing(), before);
});

onPage("dark and light have their own colours", { colorScheme: "dark" }, async (opened, page) => {
  const pixel = () => page.evaluate(() => {
    const canvas = document.getElementById("canvas");
    return Array.from(canvas.getContext("2d").getImageData(canvas.width / 2, canvas.height / 3, 1, 1).data);
  });
  const dark = await pixel();
  await page.emulateMedia({ colorScheme: "light" });
  await opened.settled();
  const light = await pixel();
  const sum = (rgba) => rgba[0] + rgba[1] + rgba[2];
  assert.ok(sum(dark) < 300 && sum(light) > 550, `${dark} and ${light}`);
});

onPage("a phone: drawn by finger, dragged, pinched, deleted by a long press; nothing is wider than it", { phone: true }, async (opened, page) => {
  assert.equal(await page.evaluate(() => document.documentElement.scrollWidth), 390);
  for (const selector of ["#outline", "#undo", "#open", "[data-layer=hull]", "#link"]) {
    const box = await (await page.$(selector)).boundingBox();
    assert.ok(box.height >= 44, `${selector} is ${box.height} high`);
  }
  const session = await opened.context.newCDPSession(page);
  const touch = async (type, ...points) => {
    await session.send("Input.dispatchTouchEvent", { type, touchPoints: points.map(([x, y], id) => ({ x, y, id })) });
  };
  const at = await opened.at(360, 60);
  await touch("touchStart", [at[0] + 6, at[1] + 6]);
  for (let i = 1; i <= 5; ++i) await touch("touchMove", [at[0] + 6 - 4 * i, at[1] + 6 + 6 * i]);
  await touch("touchEnd");
  await opened.settled();
  const [[ring]] = await opened.drawing();
  assert.ok(ring[6] < 350 && ring[7] > 70, "a finger beside the vertex drags it");
  const scale = await page.evaluate(() => globalThis.gxshapePage.view.scale);
  await touch("touchStart", [150, 300], [250, 300]);
  await touch("touchMove", [120, 300], [280, 300]);
  await touch("touchMove", [100, 300], [300, 300]);
  await touch("touchEnd");
  assert.ok((await page.evaluate(() => globalThis.gxshapePage.view.scale)) > 1.5 * scale);
  await page.tap("#fit");
  await page.waitForTimeout(50);
  const vertex = await opened.at(60, 260);
  await touch("touchStart", vertex);
  await page.waitForTimeout(900);
  await touch("touchEnd");
  await opened.settled();
  assert.equal((await opened.drawing())[0][0].length, ring.length - 2);
  await page.tap("#clear");
  await page.tap("#outline");
  const centre = await opened.at(200, 150);
  await touch("touchStart", [centre[0] + 80, centre[1]]);
  for (let i = 1; i <= 30; ++i) await touch("touchMove", [centre[0] + 80 * Math.cos(i / 5), centre[1] + 80 * Math.sin(i / 5)]);
  await touch("touchEnd");
  await opened.settled();
  assert.ok((await opened.drawing())[0][0].length > 30);
});

onPage("without WebAssembly the page says what is missing, and draws and saves all the same",
  { ready: false, script: "delete globalThis.WebAssembly" }, async (opened, page) => {
    await page.waitForSelector("body[data-state=failed]");
    assert.match(await opened.text("#message-text"), /WebAssembly/);
    await square(opened);
    assert.equal((await opened.drawing())[0][0].length, 8);
    assert.match(await opened.downloaded("#wkt"), /^POLYGON \(\(/);
  });

onPage("an outline that is too large is told and not tried", {}, async (opened, page) => {
  const points = Array.from({ length: 200_002 }, (_, i) => `${i},${i % 2}`).join("\n");
  await opened.file("large.csv", points);
  assert.match(await opened.text("#message-text"), /200002 vertices/);
  assert.equal(await opened.measure("area"), "");
  await page.click("#undo");
  await opened.settled();
  await assertMeasured(opened);
});

onPage("the same in other languages has the shape that is drawn", {}, async (opened, page) => {
  assert.match(await opened.text("#code"), /echo 'POLYGON \(\(40 60/);
  await page.click("[data-language=python]");
  assert.match(await opened.text("#code"), /gx\.Region\(\[\[40, 60\]/);
  await page.click("[data-language=cpp]");
  assert.match(await opened.text("#code"), /#include <gxshape\/gxshape\.h>/);
});

test("the page works from a server that knows nothing, too", async () => {
  const body = readFileSync(fileURLToPath(pageAddress));
  const server = createServer((_, response) => response.setHeader("content-type", "text/html").end(body));
  await new Promise((done) => server.listen(0, "127.0.0.1", done));
  const opened = await Opened.at(`http://127.0.0.1:${server.address().port}/page.html`);
  await assertMeasured(opened);
  assert.deepEqual(opened.faults, []);
  await opened.close();
  server.close();
});

onPage("10,000 vertices: a vertex is dragged, and the time of each frame is written down", {}, async (opened, page) => {
  await opened.sample("Gear, 10,000 vertices");
  await page.waitForTimeout(1500);
  await page.evaluate(() => {
    globalThis.gxshapePage.frameTimes = [];
    globalThis.frames = [];
    const tick = (t) => {
      globalThis.frames.push(t);
      requestAnimationFrame(tick);
    };
    requestAnimationFrame(tick);
  });
  const [[ring]] = await opened.drawing();
  await page.mouse.move(...(await opened.at(ring[0], ring[1])));
  await page.mouse.down();
  const from = await opened.at(ring[0], ring[1]);
  for (let i = 1; i <= 180; ++i) await page.mouse.move(from[0] - i * 0.8, from[1] + 20 * Math.sin(i / 9));
  await page.mouse.up();
  const { frames, script } = await page.evaluate(() => ({ frames: globalThis.frames, script: globalThis.gxshapePage.frameTimes }));
  const at = (list, share) => [...list].sort((a, b) => a - b)[Math.floor(share * (list.length - 1))];
  const between = frames.slice(1).map((t, i) => t - frames[i]);
  const line = (name, list) => `${name}: ${list.length}, median ${at(list, 0.5).toFixed(1)} ms, 95 of 100 below ${at(list, 0.95).toFixed(1)} ms`;
  console.log(`${line("frames", between)}\n${line("script of a frame with changes", script)}`);
  writeFileSync(join(mkdtempSync(join(tmpdir(), "gxshape-")), "frames.json"), JSON.stringify({ between, script }));
  assert.ok(script.length > 20, "frames were drawn while the vertex moved");
  await opened.settled();
  await assertMeasured(opened);
});
