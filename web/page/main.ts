// Joins the page's pieces: buttons, panels, files, link, library.  Everything here can be used before the library
// has come, and if it never does, drawing still works.
import type { Description, FileContent, Gxshape } from "../interface/gxshape";
import { App, MOST_POINTS, type AppListener, type Mode } from "./app";
import { boxOf, drawingOf, EMPTY, isClosed, pointCount, type Drawing } from "./drawing";
import { listenToKeys } from "./keys";
import { LAYERS } from "./layers";
import { linkedFrom, linkOf, LONGEST_LINK } from "./link";
import { element, showComparison, showFileErrors, showProblems, showRecords, showRepairs } from "./panels";
import { plate, samples, type Sample } from "./samples";
import { answer, SlowAnswers, type Part } from "./slow";
import { svgOf } from "./svg";
import { MeasureTable, numberText } from "./table";
import { codeOf, HELP, STATUS_TEXTS } from "./texts";

function byId<T extends HTMLElement>(id: string): T {
  return document.getElementById(id) as T;
}

class Page implements AppListener {
  private readonly table = new MeasureTable(byId<HTMLTableElement>("measures"));
  private readonly app: App;
  private gx: Gxshape | null = null;
  private language = "tool";
  private isTooLarge = false;
  private said = "";
  private sayTimer: ReturnType<typeof setTimeout> | undefined;
  private linkTimer: ReturnType<typeof setTimeout> | undefined;

  constructor() {
    this.app = new App(byId<HTMLCanvasElement>("canvas"), plate(), this);
    this.table.show(null);
    this.buttons();
    this.layerButtons();
    this.sampleList();
    this.helpTable();
    this.dropAndPaste();
    this.switches();
    listenToKeys(this.app, { help: () => this.help(), say: (text) => this.say(text) });
    new ResizeObserver(() => this.resized()).observe(this.app.canvas);
    const dark = matchMedia("(prefers-color-scheme: dark)");
    dark.addEventListener("change", () => this.recolour());
    window.addEventListener("hashchange", () => void this.readLink());
    this.stateChanged();
    this.modeChanged();
  }

  // ---- The library ---------------------------------------------------------------------------------------

  async start(load: () => Promise<Gxshape>, source: string): Promise<void> {
    await this.readLink();
    try {
      this.gx = await load();
    } catch (error) {
      return this.failed(error);
    }
    const gx = this.gx;
    const slow = new SlowAnswers(source, (question, tell) => answer(gx, question, tell), (part) => this.app.take(part),
      (busy) => document.body.classList.toggle("busy", busy));
    this.app.ask = (question) => slow.ask(question);
    this.app.useLibrary(gx);
    document.body.dataset["state"] = "ready";
  }

  private failed(error: unknown): void {
    document.body.dataset["state"] = "failed";
    this.message(`The library could not be started (${String(error)}). It needs WebAssembly with exceptions: Chrome 95, ` +
      "Firefox 100, Safari 15.2 or later. You can draw and save all the same.");
  }

  // ---- What the app tells --------------------------------------------------------------------------------

  measured(description: Description | null): void {
    const count = pointCount(this.app.drawing);
    const isTooLarge = count > MOST_POINTS;
    if (isTooLarge && !this.isTooLarge) this.message(`${count} vertices: above ${MOST_POINTS} nothing is measured here. The tool does it.`);
    this.isTooLarge = isTooLarge;
    document.body.classList.toggle("empty", count === 0);
    this.table.show(description);
    const status = description === null || description.status === "ok" ? "" : description.status;
    byId("status").hidden = status === "";
    byId("status").textContent = STATUS_TEXTS[status] ?? status;
    if (description === null) this.table.showSlow(null);
  }

  answered(part: Part): void {
    const { app } = this;
    if (part.part === "check") showProblems(byId("problems"), byId("problems-head"), pointCount(app.drawing) === 0 ? null : part.check, (x, y) => this.goTo(x, y));
    if (part.part === "repairs") {
      byId("repair-panel").hidden = part.repairs.length === 0;
      showRepairs(byId("repairs"), part.repairs, app.drawing, app.view.yUp, (d) => app.replace({ ...d, id: app.drawing.id }, "repaired"));
    }
    if (part.part === "comparison") {
      showComparison(byId("deviation"), part.comparison, app.tolerance, part.error);
      const largest = part.comparison === null ? 0 :
        Number.isFinite(app.tolerance) ? app.tolerance : Math.max(Math.abs(part.comparison.deviation_max), Math.abs(part.comparison.deviation_min));
      byId("legend-low").textContent = numberText(-largest, false);
      byId("legend-high").textContent = `+${numberText(largest, false)}`;
    }
    if (part.part === "thickness") this.table.showSlow(part.thickness);
  }

  located(location: Parameters<AppListener["located"]>[0], at: readonly [number, number] | null): void {
    const line = byId("place");
    if (location === null || location.nearest === null || at === null) {
      line.textContent = this.app.isDrawing ? "" : "Point at the picture: inside or outside, and how far from the border.";
      line.className = "";
      return;
    }
    const n = location.nearest;
    const [x, y] = n.point;
    const distance = numberText(Math.abs(location.signed_distance), false);
    line.className = location.state;
    line.textContent = `${location.state === "border" ? "on the border" : location.state} at ${numberText(this.app.view.rounded(at[0]), false)}, ` +
      `${numberText(this.app.view.rounded(at[1]), false)} · signed distance ${location.signed_distance < 0 ? "−" : ""}${distance} · nearest ` +
      `${numberText(x, false)}, ${numberText(y, false)} (${n.ring < 0 ? "outline" : `hole ${n.ring + 1}`}, edge ${n.edge})`;
    line.dataset["signedDistance"] = String(location.signed_distance);
  }

  stateChanged(): void {
    const { app } = this;
    byId<HTMLButtonElement>("undo").disabled = !app.history.canUndo;
    byId<HTMLButtonElement>("redo").disabled = !app.history.canRedo;
    const { records, current, golden } = app.state;
    byId("records-panel").hidden = records.length < 2;
    showRecords(byId("records"), records, current, byId<HTMLInputElement>("search").value, (i) => app.choose(i));
    byId("golden-panel").hidden = golden === null;
    byId<HTMLButtonElement>("golden").textContent = golden === null ? "Set as golden" : "Set anew as golden";
    this.code();
    this.describeCanvas();
    clearTimeout(this.linkTimer);
    this.linkTimer = setTimeout(() => void this.writeLink(), 300);
  }

  modeChanged(): void {
    const { mode } = this.app;
    for (const name of ["outline", "hole"]) byId(name).setAttribute("aria-pressed", String(mode === name));
    byId("finish").hidden = mode === "edit";
    byId("drop-drawn").hidden = mode === "edit";
    byId("hint").textContent = mode === "edit" ? "" :
      `Press for each vertex of the ${mode}, or draw it by hand. The first vertex or Enter closes, Esc drops it.`;
  }

  /** One polite sentence at most once a second. */
  say(text: string): void {
    this.said = text;
    this.sayTimer ??= setTimeout(() => {
      this.sayTimer = undefined;
      byId("live").textContent = this.said;
    }, 300);
  }

  private message(text: string): void {
    byId("message-text").textContent = text;
    byId("message").hidden = text === "";
  }

  private describeCanvas(): void {
    const { drawing } = this.app;
    const holes = drawing.parts.reduce((sum, rings) => sum + rings.length - 1, 0);
    this.app.canvas.setAttribute("aria-label", pointCount(drawing) === 0 ? "Empty drawing. Press N to draw an outline." :
      `Drawing: ${isClosed(drawing) ? "outline" : drawing.kind} of ${pointCount(drawing)} vertices, ${holes} holes. ` +
      "Full stop and comma go from vertex to vertex, arrows move it.");
  }

  private goTo(x: number, y: number): void {
    if (!Number.isFinite(x) || !Number.isFinite(y)) return;
    this.app.view.centre = [x, y];
    this.app.viewChanged();
    this.app.canvas.scrollIntoView({ block: "nearest" });
  }

  private resized(): void {
    const wasEmpty = this.app.view.width < 2;
    this.app.picture.resize();
    if (wasEmpty) this.app.fit();
    this.app.redraw();
  }

  private recolour(): void {
    this.app.picture.readColours();
    this.app.redraw();
  }

  // ---- Buttons -------------------------------------------------------------------------------------------

  private on(id: string, action: () => void): void {
    byId(id).addEventListener("click", action);
  }

  private buttons(): void {
    const { app } = this;
    const toggle = (mode: Mode) => app.begin(app.mode === mode ? "edit" : mode);
    this.on("outline", () => toggle("outline"));
    this.on("hole", () => toggle("hole"));
    this.on("finish", () => app.finishDrawing());
    this.on("drop-drawn", () => app.begin("edit"));
    this.on("undo", () => app.undo());
    this.on("redo", () => app.redo());
    this.on("fit", () => app.fit());
    this.on("clear", () => app.replaceAll([EMPTY], null, "empty"));
    this.on("help", () => this.help());
    this.on("golden", () => app.setGolden(app.drawing));
    this.on("golden-off", () => app.setGolden(null));
    this.on("svg", () => this.save("gxshape.svg", "image/svg+xml", this.svg()));
    this.on("wkt", () => this.save("gxshape.wkt", "text/plain", `${this.wkt()}\n`));
    this.on("link", () => void this.copyLink());
    this.on("message-close", () => this.message(""));
    this.on("open", () => byId("file").click());
    const file = byId<HTMLInputElement>("file");
    file.addEventListener("change", () => {
      if (file.files?.[0]) void this.openFile(file.files[0]);
      file.value = "";
    });
    byId("search").addEventListener("input", () => this.stateChanged());
    byId("tolerance").addEventListener("input", () => this.toleranceChanged());
    for (const button of document.querySelectorAll<HTMLButtonElement>("[data-language]")) {
      button.addEventListener("click", () => {
        this.language = button.dataset["language"]!;
        this.code();
      });
    }
    this.on("code-copy", () => void this.copy(byId("code").textContent ?? "", "program copied"));
  }

  private toleranceChanged(): void {
    const value = byId<HTMLInputElement>("tolerance").valueAsNumber;
    this.app.tolerance = value > 0 ? value : Infinity;
    this.app.askSlowly();
  }

  private switches(): void {
    const degrees = byId<HTMLInputElement>("degrees");
    const digits = byId<HTMLInputElement>("digits");
    const yUp = byId<HTMLInputElement>("y-up");
    degrees.addEventListener("change", () => this.remeasure(() => (this.table.degrees = degrees.checked)));
    digits.addEventListener("change", () => this.remeasure(() => (this.table.allDigits = digits.checked)));
    yUp.addEventListener("change", () => {
      this.app.view.yUp = yUp.checked;
      this.app.fit();
      this.stateChanged();
      this.app.askSlowly();
    });
  }
  private remeasure(change: () => void): void {
    change();
    this.app.remeasure();
    this.app.askSlowly();
  }

  private setYUp(isUp: boolean): void {
    byId<HTMLInputElement>("y-up").checked = isUp;
    this.app.view.yUp = isUp;
  }

  private layerButtons(): void {
    byId("layers").append(...LAYERS.map((layer) => {
      const button = element("button", "layer");
      button.type = "button";
      button.dataset["layer"] = layer.name;
      const swatch = document.createElementNS("http://www.w3.org/2000/svg", "svg");
      swatch.setAttribute("viewBox", "0 0 26 8");
      swatch.setAttribute("aria-hidden", "true");
      swatch.innerHTML = `<path d="M1 4H25" stroke="var(${layer.colour})" stroke-width="2.5" stroke-dasharray="${layer.dash.join(" ")}"/>`;
      button.append(swatch, layer.label);
      const shown = () => button.setAttribute("aria-pressed", String(this.app.layers.has(layer.name)));
      button.addEventListener("click", () => {
        this.app.setLayer(layer.name, !this.app.layers.has(layer.name));
        shown();
      });
      shown();
      return button;
    }));
  }

  private sampleList(): void {
    const all = samples((globalThis as { gxshapeSamples?: Record<string, string> }).gxshapeSamples ?? {});
    const list = byId<HTMLSelectElement>("samples");
    all.forEach((sample, i) => list.append(new Option(sample.title, String(i))));
    list.addEventListener("change", () => {
      const sample = all[Number(list.value)];
      list.value = "";
      if (sample !== undefined) this.showSample(sample);
    });
  }

  private showSample(sample: Sample): void {
    this.setYUp(sample.yUp === true);
    if (sample.drawing !== undefined) this.app.replaceAll([sample.drawing()], null, sample.title);
    else this.readFile(sample.text!, sample.title);
  }

  private helpTable(): void {
    const table = byId<HTMLTableElement>("help-keys");
    for (const [keys, what] of HELP) {
      const row = table.insertRow();
      row.append(element("th", "", keys), element("td", "", what));
    }
  }

  private help(): void {
    byId<HTMLDialogElement>("help-dialog").showModal();
  }

  // ---- Files ---------------------------------------------------------------------------------------------

  private dropAndPaste(): void {
    const zone = document.body;
    zone.addEventListener("dragover", (e) => {
      e.preventDefault();
      zone.classList.add("dropping");
    });
    zone.addEventListener("dragleave", (e) => e.relatedTarget === null && zone.classList.remove("dropping"));
    zone.addEventListener("drop", (e) => {
      e.preventDefault();
      zone.classList.remove("dropping");
      const file = e.dataTransfer?.files[0];
      if (file !== undefined) void this.openFile(file);
    });
    const isField = () => document.activeElement?.matches("input, textarea") === true;
    document.addEventListener("paste", (e) => {
      const text = e.clipboardData?.getData("text/plain") ?? "";
      if (!isField() && text.trim() !== "") this.readFile(text, "pasted");
    });
    document.addEventListener("copy", (e) => {
      if (isField() || String(getSelection()) !== "") return;
      e.clipboardData?.setData("text/plain", this.wkt());
      e.preventDefault();
      this.say("copied as WKT");
    });
  }

  private async openFile(file: File): Promise<void> {
    if (file.size > 64 * 2 ** 20) return this.message(`${file.name}: larger than 64 MiB; the tool reads it.`);
    this.readFile(new Uint8Array(await file.arrayBuffer()), file.name);
  }

  private readFile(content: string | Uint8Array, name: string): void {
    if (this.gx === null) return this.message("Files are read by the library, which is not there yet.");
    let read: FileContent;
    try {
      read = this.gx.read(content);
    } catch (error) {
      return this.message(`${name}: ${error instanceof Error ? error.message : String(error)}`);
    }
    const drawings = read.shapes.map(drawingOf).filter((d) => pointCount(d) > 0);
    for (const shape of read.shapes) shape.dispose();
    showFileErrors(byId("file-errors"), read.errors);
    byId("file-errors-panel").hidden = read.errors.length === 0;
    if (drawings.length === 0) return this.message(`${name}: there is no shape in it.`);
    this.message("");
    this.app.replaceAll(drawings, null, `${name}: ${drawings.length} records`);
  }

  private wkt(): string {
    const { drawing } = this.app;
    if (this.gx === null) return plainWkt(drawing);
    const shape = this.gx.shape(drawing.kind, drawing.parts);
    try {
      return shape.toWkt();
    } finally {
      shape.dispose();
    }
  }

  private svg(): string {
    const style = getComputedStyle(document.documentElement);
    const { app } = this;
    return svgOf(app.drawing, app.state.golden, app.shownFigures(), app.view.yUp, (name) => style.getPropertyValue(name).trim());
  }

  private save(name: string, type: string, text: string): void {
    const link = element("a");
    link.href = URL.createObjectURL(new Blob([text], { type }));
    link.download = name;
    link.click();
    setTimeout(() => URL.revokeObjectURL(link.href), 10_000);
  }

  // ---- Link ----------------------------------------------------------------------------------------------

  private async readLink(): Promise<void> {
    try {
      const linked = await linkedFrom(location.hash);
      if (linked === null) return;
      this.setYUp(linked.yUp);
      this.app.replaceAll([linked.drawing], linked.golden, "drawing of the link");
      this.message("");
    } catch (error) {
      this.app.replaceAll([EMPTY], null, "empty");
      this.message(error instanceof Error ? error.message : String(error));
    }
  }

  private async linkText(): Promise<string> {
    const { app } = this;
    return linkOf({ drawing: app.drawing, golden: app.state.golden, yUp: app.view.yUp });
  }

  /** Follows the drawing, where it is short enough; a page that was opened without a link keeps its address. */
  private async writeLink(): Promise<void> {
    if (!this.app.history.canUndo && location.hash === "") return;
    const isShort = pointCount(this.app.drawing) <= LONGEST_LINK / 4;
    const text = isShort ? await this.linkText() : "";
    const hash = text !== "" && text.length <= LONGEST_LINK ? `#${text}` : "";
    if (location.hash !== hash) history.replaceState(null, "", hash === "" ? location.pathname + location.search : hash);
  }

  private async copyLink(): Promise<void> {
    const text = await this.linkText();
    if (text.length > LONGEST_LINK) {
      return this.message(`The drawing would make a link of ${text.length} characters, more than many programs take. Save it as WKT instead.`);
    }
    history.replaceState(null, "", `#${text}`);
    await this.copy(location.href, "link copied");
  }

  private async copy(text: string, said: string): Promise<void> {
    try {
      await navigator.clipboard.writeText(text);
      this.say(said);
      this.message(`${said[0]!.toUpperCase()}${said.slice(1)}.`);
      setTimeout(() => byId("message-text").textContent?.toLowerCase().startsWith(said) && this.message(""), 2500);
    } catch {
      this.message("The browser does not let this page write to the clipboard; the link stands in the address.");
    }
  }

  private code(): void {
    for (const button of document.querySelectorAll<HTMLButtonElement>("[data-language]")) {
      button.setAttribute("aria-pressed", String(button.dataset["language"] === this.language));
    }
    const isLarge = pointCount(this.app.drawing) > 1000;
    byId("code").textContent = codeOf(this.language, this.app.drawing, isLarge ? "" : this.wkt());
  }

  /** For the tests. */
  get inner(): App {
    return this.app;
  }
}

/** Without the library: enough to save what was drawn. */
function plainWkt(drawing: Drawing): string {
  const ringText = (ring: Float64Array) => {
    const pairs: string[] = [];
    for (let i = 0; i < ring.length; i += 2) pairs.push(`${ring[i]} ${ring[i + 1]}`);
    return `(${[...pairs, pairs[0]].join(", ")})`;
  };
  const parts = drawing.parts.map((rings) => `(${rings.map(ringText).join(", ")})`);
  if (boxOf([drawing]) === null) return "POLYGON EMPTY";
  return parts.length === 1 ? `POLYGON ${parts[0]}` : `MULTIPOLYGON (${parts.join(", ")})`;
}

const page = new Page();
Object.assign(globalThis, {
  gxshapePage: page.inner,
  startGxshapePage: (load: () => Promise<Gxshape>, source: string) => page.start(load, source),
});
