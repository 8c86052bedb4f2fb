// What the tests share: where things lie, the native tool, a browser that counts what must not happen.
import { spawnSync } from "node:child_process";
import { existsSync, readFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import { chromium } from "playwright-core";

export const root = dirname(dirname(dirname(fileURLToPath(import.meta.url))));
export const npm = join(root, "build/web/npm");
export const pageAddress = pathToFileURL(join(root, "build/web/page/index.html")).href;
const programs = process.env.GXSHAPE_NATIVE ?? join(root, "build/release/bin");

/** What the native tool answers, line by line. */
export function tool(args, input) {
  return answersOf("gxshape", args, input);
}
/** The described repairs by the native library: two lines a record. */
export const walks = (input) => answersOf("gxshape_web_walks", [], input);

function answersOf(program, args, input) {
  const done = spawnSync(join(programs, program), args, { input, encoding: "utf8", maxBuffer: 2 ** 30 });
  if (done.error !== undefined) throw done.error;
  if (done.status > 1) throw new Error(`${args.join(" ")}: ${done.stderr}`);
  return done.stdout.trim().split("\n");
}
export const toolAnswers = (args, input) => tool([...args, "-o", "jsonl"], input).map((line) => JSON.parse(line));

export const data = (name) => readFileSync(join(root, "examples/data", name), "utf8");

/** A plain generator of numbers in [0, 1); the seed is printed by whoever uses it. */
export function random(seed) {
  let state = seed >>> 0;
  return () => {
    state = (state + 0x6d2b79f5) >>> 0;
    let t = Math.imul(state ^ (state >>> 15), state | 1);
    t ^= t + Math.imul(t ^ (t >>> 7), t | 61);
    return ((t ^ (t >>> 14)) >>> 0) / 2 ** 32;
  };
}

let browser = null;
export async function launched() {
  const path = ["/usr/bin/chromium", "/usr/bin/chromium-browser"].find(existsSync);
  browser ??= await chromium.launch({ executablePath: path });
  return browser;
}
export async function closeBrowser() {
  await browser?.close();
  browser = null;
}

/** A page with its faults: errors of scripts, requests of anything but the file itself. */
export class Opened {
  faults = [];

  static async at(address = pageAddress, { script, phone = false, ready = true, ...settings } = {}) {
    const opened = new Opened();
    const whole = phone
      ? { viewport: { width: 390, height: 844 }, hasTouch: true, isMobile: true, ...settings }
      : { viewport: { width: 1280, height: 900 }, ...settings };
    opened.context = await (await launched()).newContext({ acceptDownloads: true, ...whole });
    opened.page = await opened.context.newPage();
    opened.page.on("pageerror", (error) => opened.faults.push(`error: ${error.message}`));
    opened.page.on("console", (message) => message.type() === "error" && opened.faults.push(`console: ${message.text()}`));
    opened.page.on("request", (request) => {
      const url = request.url();
      if (!/^(data|blob):/.test(url) && url.split("#")[0] !== address.split("#")[0]) opened.faults.push(`request: ${url}`);
    });
    if (script !== undefined) await opened.page.addInitScript(script);
    await opened.page.goto(address);
    if (ready) await opened.page.waitForSelector("body[data-state=ready]", { timeout: 60000 });
    return opened;
  }

  async close() {
    await this.context.close();
  }

  /** Waits for the frame and for the worker to be done with what was changed. */
  async settled() {
    await this.page.evaluate(() => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done))));
    await this.page.waitForTimeout(30);
    await this.page.waitForFunction(() => !document.body.classList.contains("busy"), null, { timeout: 60000 });
  }

  /** Where a coordinate lies in the window. */
  async at(x, y) {
    return this.page.evaluate(([wx, wy]) => {
      const box = document.getElementById("canvas").getBoundingClientRect();
      const [px, py] = globalThis.gxshapePage.view.toScreen(wx, wy);
      return [box.left + px, box.top + py];
    }, [x, y]);
  }

  async click(x, y) {
    await this.page.mouse.click(...(await this.at(x, y)));
  }
  async drag(from, to, steps = 6) {
    await this.page.mouse.move(...(await this.at(...from)));
    await this.page.mouse.down();
    await this.page.mouse.move(...(await this.at(...to)), { steps });
    await this.page.mouse.up();
    await this.settled();
  }

  /** The drawing: of each part its rings. */
  async drawing() {
    return this.page.evaluate(() => globalThis.gxshapePage.drawing.parts.map((rings) => rings.map((ring) => Array.from(ring))));
  }
  /** All digits of a measure, as the table has them. */
  async measure(name) {
    return this.page.getAttribute(`[data-name="${name}"]`, "title");
  }
  async text(selector) {
    return this.page.textContent(selector);
  }
  async file(name, content) {
    const chooser = this.page.waitForEvent("filechooser");
    await this.page.click("#open");
    await (await chooser).setFiles({ name, mimeType: "text/plain", buffer: Buffer.from(content) });
    await this.settled();
  }
  async sample(title) {
    await this.page.selectOption("#samples", { label: title });
    await this.settled();
  }
  async downloaded(button) {
    const waiting = this.page.waitForEvent("download");
    await this.page.click(button);
    return readFileSync(await (await waiting).path(), "utf8");
  }
}

/** WKT of a drawing, as the tool reads it. */
export function wktOf(parts) {
  const ring = (r) => {
    const pairs = [];
    for (let i = 0; i < r.length; i += 2) pairs.push(`${r[i]} ${r[i + 1]}`);
    return `(${[...pairs, pairs[0]].join(", ")})`;
  };
  return parts.length === 1
    ? `POLYGON (${parts[0].map(ring).join(", ")})`
    : `MULTIPOLYGON (${parts.map((rings) => `(${rings.map(ring).join(", ")})`).join(", ")})`;
}
