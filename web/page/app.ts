// The page's state and what changes it.
//
//   1. The history holds states: the records of the file, which of them is shown, the golden outline.  They are
//      never changed; a drag works on a copy of the drawing and puts it into the history when it ends.
//   2. The library's shape is made anew when the drawing is another one, and changed point by point in a drag.
//   3. A frame is drawn when something has changed: measures and layers first, then the canvas, then the table.
//   4. Slow answers come from the worker and belong to the next frame.
import type { Comparison, Description, Gxshape, Location, Problem, Shape } from "../interface/gxshape";
import {
  copied, EMPTY, flatIndex, isClosed, looksInside, pointCount, pointOf, withHole, withVertexAfter, withoutVertex, boxOf,
  type Drawing, type VertexAt,
} from "./drawing";
import { History } from "./history";
import { circleFigures, figuresOf, wallFigures, type Figures } from "./layers";
import { Picture, type DeviationPiece } from "./picture";
import { PointerInput, vertexNear, type Grip, type PointerTarget } from "./pointer";
import type { Part, Question } from "./slow";
import { View } from "./view";

export interface State {
  records: readonly Drawing[];
  current: number;
  golden: Drawing | null;
}

/** What the rest of the page is told. */
export interface AppListener {
  measured(description: Description | null): void;
  answered(part: Part): void;
  located(location: Location | null, at: readonly [number, number] | null): void;
  stateChanged(): void;
  modeChanged(): void;
  say(text: string): void;
}

export const MOST_POINTS = 200_000;
export type Mode = "edit" | "outline" | "hole";

export class App implements PointerTarget {
  readonly view = new View();
  readonly history: History<State>;
  readonly picture: Picture;
  readonly layers = new Set<string>(["axes"]);
  mode: Mode = "edit";
  tolerance = Infinity;
  selected: VertexAt | null = null;
  figures: Figures = new Map();
  /** Duration of the last frames' script, for the tests. */
  frameTimes: number[] = [];
  ask: ((question: Question) => void) | null = null;

  private gx: Gxshape | null = null;
  private shape: Shape | null = null;
  private live: Drawing;
  private drawn: number[] = [];
  private grip: Grip | null = null;
  private dragged = false;
  private cursor: [number, number] | null = null;
  private reach = 10;
  private hovered: VertexAt | null = null;
  private location: Location | null = null;
  private problems: readonly Problem[] = [];
  private deviation: DeviationPiece[] = [];
  private slowFigures: Figures = new Map();
  private isMeasured = false;
  private frame = 0;

  constructor(readonly canvas: HTMLCanvasElement, first: Drawing, private readonly listener: AppListener) {
    this.history = new History<State>({ records: [first], current: 0, golden: null });
    this.live = first;
    this.picture = new Picture(canvas, this.view);
    this.picture.resize();
    this.fit();
    new PointerInput(canvas, this);
    canvas.addEventListener("focus", () => this.redraw());
    canvas.addEventListener("blur", () => this.redraw());
  }

  // ---- What is there -------------------------------------------------------------------------------------

  get state(): State {
    return this.history.now;
  }
  get drawing(): Drawing {
    return this.live;
  }
  get isDrawing(): boolean {
    return this.mode !== "edit";
  }
  get hasLibrary(): boolean {
    return this.gx !== null;
  }

  /** The library has come: from now on everything is measured. */
  useLibrary(gx: Gxshape): void {
    this.gx = gx;
    this.takeDrawing(this.live);
  }

  /** Shows the state of the history. */
  show(): void {
    const { records, current } = this.state;
    this.selected = this.hovered = null;
    this.takeDrawing(records[current] ?? EMPTY);
    this.listener.stateChanged();
  }

  private takeDrawing(drawing: Drawing): void {
    this.live = drawing;
    this.shape?.dispose();
    this.shape = null;
    this.problems = [];
    this.deviation = [];
    this.slowFigures = new Map();
    if (this.gx !== null && pointCount(drawing) <= MOST_POINTS) this.shape = this.gx.shape(drawing.kind, drawing.parts);
    this.changed();
  }

  /** The shape is another one: measures, slow answers, picture. */
  private changed(): void {
    this.isMeasured = false;
    this.askSlowly();
    this.redraw();
  }

  askSlowly(): void {
    if (this.shape === null) return;
    const { golden } = this.state;
    this.ask?.({ drawing: this.live, golden, tolerance: this.tolerance, thickness: true });
  }

  redraw(): void {
    if (this.frame === 0) this.frame = requestAnimationFrame(() => this.drawFrame());
  }

  private drawFrame(): void {
    this.frame = 0;
    const begun = performance.now();
    if (!this.isMeasured) this.measure();
    this.locate();
    this.picture.draw({
      drawing: this.live,
      golden: this.state.golden,
      figures: this.shownFigures(),
      problems: this.problems,
      deviation: this.deviation,
      drawn: this.drawn,
      cursor: this.cursor,
      location: this.location,
      selected: this.selected,
      hovered: this.hovered,
      focused: document.activeElement === this.canvas,
    });
    this.frameTimes = [...this.frameTimes.slice(-599), performance.now() - begun];
  }

  private measure(): void {
    this.isMeasured = true;
    const description = this.shape === null || pointCount(this.live) === 0 ? null : this.shape.describe();
    this.figures = description === null ? new Map() : figuresOf(this.shape!, description, this.layers);
    this.listener.measured(description);
  }

  shownFigures(): Figures {
    const all = new Map(this.figures);
    for (const [name, figures] of this.slowFigures) if (this.layers.has(name)) all.set(name, figures);
    return all;
  }

  private locate(): void {
    const isAsked = this.cursor !== null && this.shape !== null && pointCount(this.live) > 0 && this.drawn.length === 0;
    const at = this.cursor === null ? null : this.view.toWorld(...this.cursor);
    this.location = isAsked ? this.shape!.locate(at!) : null;
    this.listener.located(this.location, at);
  }

  /** An answer of the worker. */
  take(part: Part): void {
    if (part.part === "check") this.problems = part.check.problems;
    if (part.part === "comparison") this.deviation = part.comparison === null ? [] : piecesOf(part.comparison, this.tolerance);
    if (part.part === "thickness") {
      this.slowFigures = new Map();
      if (part.thickness !== null) {
        const { inscribed_circle_centre: centre, inscribed_circle_radius: radius, wall_from: from, wall_to: to } = part.thickness;
        this.slowFigures.set("inscribed", circleFigures(centre, radius));
        this.slowFigures.set("wall", wallFigures(from?.point, to?.point));
      }
    }
    this.listener.answered(part);
    this.redraw();
  }

  setLayer(name: string, isShown: boolean): void {
    if (isShown) this.layers.add(name);
    else this.layers.delete(name);
    this.isMeasured = false;
    this.redraw();
  }

  /** The layers or the units of the table have changed. */
  remeasure(): void {
    this.isMeasured = false;
    this.redraw();
  }

  // ---- Changes -------------------------------------------------------------------------------------------

  private push(state: Partial<State>, said: string): void {
    this.history.push({ ...this.state, ...state });
    this.show();
    this.listener.say(said);
  }

  /** Puts another drawing in the place of the current one. */
  replace(drawing: Drawing, said: string): void {
    const records = this.state.records.map((old, i) => (i === this.state.current ? drawing : old));
    this.push({ records: records.length === 0 ? [drawing] : records }, said);
  }
  replaceAll(records: readonly Drawing[], golden: Drawing | null, said: string): void {
    this.push({ records, current: 0, golden }, said);
    this.fit();
  }
  choose(current: number): void {
    this.push({ current }, `record ${current + 1}`);
    this.fit();
  }
  setGolden(golden: Drawing | null): void {
    this.push({ golden }, golden === null ? "no golden outline" : "this is the golden outline now");
  }
  undo(): void {
    if (this.history.undo()) this.show();
  }
  redo(): void {
    if (this.history.redo()) this.show();
  }

  fit(): void {
    const box = boxOf(this.state.golden === null ? [this.live] : [this.live, this.state.golden]);
    this.view.fit(box === null ? null : withCircles(box, this.shownFigures()));
    this.viewChanged();
  }
  viewChanged(): void {
    this.redraw();
  }
  leave(): void {
    this.cursor = this.hovered = null;
    this.redraw();
  }

  probe(px: number, py: number, reach: number, hover: boolean): void {
    this.cursor = [px, py];
    this.reach = reach;
    if (hover) {
      this.hovered = this.isDrawing ? null : vertexNear(this.live, this.view, px, py, this.reach);
      this.canvas.style.cursor = this.isDrawing ? "crosshair" : this.hovered !== null ? "grab" : "default";
    }
    this.redraw();
  }

  // ---- Dragging ------------------------------------------------------------------------------------------

  beginDrag(grip: Grip): void {
    this.grip = grip;
    this.dragged = false;
    if (grip.kind === "vertex") this.selected = grip.vertices[0]!;
    this.redraw();
  }

  dragBy(dx: number, dy: number): void {
    if (this.grip === null) return;
    if (!this.dragged) this.live = copied(this.live);
    this.dragged = true;
    this.moveVertices(this.grip.vertices, dx, dy);
    this.changed();
  }

  private moveVertices(vertices: readonly VertexAt[], dx: number, dy: number): void {
    for (const at of vertices) {
      const ring = this.live.parts[at.part]![at.ring]!;
      ring[2 * at.index]! += dx;
      ring[2 * at.index + 1]! += dy;
      // Many points are handed over together, below.
      if (vertices.length <= 2) this.shape?.movePoint(flatIndex(this.live, at), ...pointOf(this.live, at));
    }
    if (vertices.length > 2 && this.shape !== null && this.gx !== null) {
      this.shape.dispose();
      this.shape = this.gx.shape(this.live.kind, this.live.parts);
    }
  }

  endDrag(): void {
    const grip = this.grip;
    this.grip = null;
    if (grip === null || !this.dragged) return;
    const drawing = copied(this.live);
    for (const at of grip.vertices) {
      const ring = drawing.parts[at.part]![at.ring]!;
      ring[2 * at.index] = this.view.rounded(ring[2 * at.index]!);
      ring[2 * at.index + 1] = this.view.rounded(ring[2 * at.index + 1]!);
    }
    const { selected } = this;
    // A whole that is moved keeps its shape: its coordinates are not rounded one by one.
    this.replace(grip.kind === "whole" ? this.live : drawing, `${grip.kind} moved`);
    this.selected = selected;
  }

  cancelDrag(): void {
    if (this.grip !== null && this.dragged) this.takeDrawing(this.state.records[this.state.current] ?? EMPTY);
    this.grip = null;
  }

  // ---- Vertices by key -----------------------------------------------------------------------------------

  /** Moves the selected vertex by so many steps of a key. */
  nudge(dx: number, dy: number): void {
    if (this.selected === null) return;
    const step = this.view.keyStep;
    const at = this.selected;
    const drawing = copied(this.live);
    const ring = drawing.parts[at.part]![at.ring]!;
    ring[2 * at.index] = Number.parseFloat((ring[2 * at.index]! + dx * step).toPrecision(12));
    ring[2 * at.index + 1] = Number.parseFloat((ring[2 * at.index + 1]! + (this.view.yUp ? -dy : dy) * step).toPrecision(12));
    const [x, y] = pointOf(drawing, at);
    this.replace(drawing, `vertex ${at.index + 1} at ${x}, ${y}`);
    this.selected = at;
  }

  deleteVertex(at: VertexAt): void {
    this.replace(withoutVertex(this.live, at), `vertex ${at.index + 1} removed`);
  }

  insertAt(edge: VertexAt, x: number, y: number): void {
    this.replace(withVertexAfter(this.live, edge, this.view.rounded(x), this.view.rounded(y)), "vertex added");
    this.selected = { ...edge, index: edge.index + 1 };
    this.redraw();
  }

  splitSelected(): void {
    const at = this.selected;
    if (at === null) return;
    const ring = this.live.parts[at.part]![at.ring]!;
    const [x, y] = pointOf(this.live, at);
    const [nx, ny] = pointOf(this.live, { ...at, index: (at.index + 1) % (ring.length / 2) });
    this.insertAt(at, (x + nx) / 2, (y + ny) / 2);
  }

  // ---- Drawing -------------------------------------------------------------------------------------------

  begin(mode: Mode): void {
    this.drawn = [];
    this.mode = mode;
    this.canvas.style.cursor = mode === "edit" ? "default" : "crosshair";
    this.listener.modeChanged();
    this.redraw();
  }

  addDrawnPoint(x: number, y: number): void {
    const [rx, ry] = [this.view.rounded(x), this.view.rounded(y)];
    const n = this.drawn.length;
    if (n >= 2 && this.drawn[n - 2] === rx && this.drawn[n - 1] === ry) return;
    this.drawn.push(rx, ry);
    this.cursor = this.view.toScreen(rx, ry);
    this.redraw();
  }

  nearFirstDrawn(px: number, py: number, reach: number): boolean {
    if (this.drawn.length < 6) return false;
    const [x, y] = this.view.toScreen(this.drawn[0]!, this.drawn[1]!);
    return Math.hypot(px - x, py - y) <= reach;
  }

  finishDrawing(): void {
    const ring = Float64Array.from(this.drawn);
    const { mode } = this;
    if (ring.length < 6) {
      this.listener.say("an outline needs three vertices");
      return;
    }
    this.begin("edit");
    if (mode === "hole" && this.live.parts.length > 0) {
      const part = this.live.parts.findIndex((rings) => looksInside(rings.slice(0, 1), ring[0]!, ring[1]!));
      const kind = isClosed(this.live) ? this.live.kind : "region";
      return this.replace(withHole({ ...this.live, kind }, Math.max(0, part), ring), "hole added");
    }
    this.replace({ kind: "region", parts: [[ring]], id: "" }, `outline of ${ring.length / 2} vertices`);
  }
}

/** The box with the circles and ellipses that are shown, which reach beyond the shape. */
function withCircles(box: [number, number, number, number], figures: Figures): [number, number, number, number] {
  const all: [number, number, number, number] = [...box];
  for (const figure of [...figures.values()].flat()) {
    if (figure.type !== "ellipse") continue;
    const { centre: [x, y], a } = figure;
    all[0] = Math.min(all[0], x - a);
    all[1] = Math.min(all[1], y - a);
    all[2] = Math.max(all[2], x + a);
    all[3] = Math.max(all[3], y + a);
  }
  return all;
}

/** Stretches of the border with the colour of the deviation in their middle. */
function piecesOf({ samples, deviation_max, deviation_min }: Comparison, tolerance: number): DeviationPiece[] {
  const largest = Number.isFinite(tolerance) && tolerance > 0 ? tolerance : Math.max(Math.abs(deviation_max), Math.abs(deviation_min));
  const pieces: DeviationPiece[] = [];
  let first = 0;
  for (let i = 0; i < samples.length; ++i) {
    const a = samples[i]!;
    const ring = a.place?.ring;
    if (i > 0 && samples[i - 1]!.place?.ring !== ring) first = i;
    const isLast = i + 1 === samples.length || samples[i + 1]!.place?.ring !== ring;
    const b = samples[isLast ? first : i + 1]!;
    if (a.place === null || b.place === null) continue;
    const value = largest > 0 ? (a.deviation + b.deviation) / 2 / largest : 0;
    const level = Math.round(Math.max(-1, Math.min(1, value)) * 8) / 8;
    pieces.push({ points: [...a.place.point, ...b.place.point], level });
  }
  return pieces;
}
