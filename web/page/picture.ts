// The canvas: fills and outlines, layers over them, handles, problems, deviation, the cursor's nearest place.
//
// Shapes are a path on the canvas: with 10,000 vertices a path of the SVG took five times the script time of a
// frame.  Colours are read from the style sheet, so that dark and light are one place.
import type { Location, Problem } from "../interface/gxshape";
import { isClosed, pointCount, pointOf, type Drawing, type VertexAt } from "./drawing";
import { LAYERS, type Figure, type Figures } from "./layers";
import type { View } from "./view";

/** A piece of border with a colour between -1 (chip) and 1 (burr). */
export interface DeviationPiece {
  points: number[];
  level: number;
}

export interface Scene {
  drawing: Drawing;
  golden: Drawing | null;
  figures: Figures;
  problems: readonly Problem[];
  deviation: readonly DeviationPiece[];
  /** Points of the ring that is being drawn, and where the cursor is. */
  drawn: readonly number[];
  cursor: readonly [number, number] | null;
  location: Location | null;
  selected: VertexAt | null;
  hovered: VertexAt | null;
  /** Whether the canvas has the keyboard. */
  focused: boolean;
}

/** Handles of all vertices are drawn up to here; beyond, those near the cursor. */
const MOST_HANDLES = 400;
const NEAR = 60;

const COLOURS = ["ink", "muted", "fill", "outline", "handle", "golden", "bad", "inside", "outside", "border", "chip", "burr", "even", "surface",
  ...LAYERS.map((l) => l.colour.slice(2))] as const;

export class Picture {
  private readonly context: CanvasRenderingContext2D;
  private colours: Record<string, string> = {};

  constructor(readonly canvas: HTMLCanvasElement, readonly view: View) {
    this.context = canvas.getContext("2d")!;
    this.readColours();
  }

  /** Reads the colours anew: dark and light have changed. */
  readColours(): void {
    const style = getComputedStyle(document.documentElement);
    for (const name of COLOURS) this.colours[name] = style.getPropertyValue(`--${name}`).trim();
  }

  /** Takes the size of the canvas from the page. */
  resize(): void {
    const box = this.canvas.getBoundingClientRect();
    const ratio = window.devicePixelRatio || 1;
    this.view.width = box.width;
    this.view.height = box.height;
    this.canvas.width = Math.max(1, Math.round(box.width * ratio));
    this.canvas.height = Math.max(1, Math.round(box.height * ratio));
  }

  draw(scene: Scene): void {
    const c = this.context;
    const ratio = window.devicePixelRatio || 1;
    c.setTransform(ratio, 0, 0, ratio, 0, 0);
    c.clearRect(0, 0, this.view.width, this.view.height);
    c.lineJoin = "round";
    c.lineCap = "round";
    this.grid();
    if (scene.golden !== null) this.golden(scene.golden);
    this.shape(scene.drawing);
    for (const piece of scene.deviation) this.piece(piece);
    for (const layer of LAYERS) {
      for (const figure of scene.figures.get(layer.name) ?? []) this.figure(figure, layer.colour, layer.dash);
    }
    this.handles(scene);
    scene.problems.forEach((problem, i) => this.problem(problem, i + 1));
    if (scene.drawn.length > 0) this.beingDrawn(scene);
    else if (scene.location !== null && scene.cursor !== null) this.nearest(scene.location, scene.cursor);
  }

  // A light grid of round coordinates, about 80 pixels apart.
  private grid(): void {
    const { view } = this;
    const raw = 80 / view.scale;
    const power = 10 ** Math.floor(Math.log10(raw));
    const step = [1, 2, 5, 10].map((m) => m * power).find((s) => s >= raw)!;
    const [ax, ay] = view.toWorld(0, 0);
    const [bx, by] = view.toWorld(view.width, view.height);
    const c = this.context;
    c.strokeStyle = this.colours["muted"]!;
    c.fillStyle = this.colours["muted"]!;
    c.globalAlpha = 0.22;
    c.lineWidth = 1;
    c.beginPath();
    for (let i = Math.ceil(ax / step); i * step <= bx; ++i) {
      const x = Math.round(view.toScreen(i * step, 0)[0]) + 0.5;
      c.moveTo(x, 0);
      c.lineTo(x, view.height);
    }
    for (let i = Math.ceil(Math.min(ay, by) / step); i * step <= Math.max(ay, by); ++i) {
      const y = Math.round(view.toScreen(0, i * step)[1]) + 0.5;
      c.moveTo(0, y);
      c.lineTo(view.width, y);
    }
    c.stroke();
    c.globalAlpha = 0.9;
    c.font = "11px system-ui, sans-serif";
    for (let i = Math.ceil(ax / step); i * step <= bx; ++i) {
      const x = view.toScreen(i * step, 0)[0];
      if (x > 24 && x < view.width - 24) c.fillText(String(Number.parseFloat((i * step).toPrecision(10))), x + 3, view.height - 5);
    }
    for (let i = Math.ceil(Math.min(ay, by) / step); i * step <= Math.max(ay, by); ++i) {
      const y = view.toScreen(0, i * step)[1];
      if (y > 20 && y < view.height - 24) c.fillText(String(Number.parseFloat((i * step).toPrecision(10))), 4, y - 3);
    }
    c.globalAlpha = 1;
  }

  private trace(points: ArrayLike<number>, closed: boolean): void {
    const { scale, sy, centre, width, height } = this.view;
    const [ox, oy] = [width / 2 - centre[0] * scale, height / 2 - centre[1] * sy];
    const c = this.context;
    for (let i = 0; i + 1 < points.length; i += 2) {
      const [x, y] = [ox + points[i]! * scale, oy + points[i + 1]! * sy];
      if (i === 0) c.moveTo(x, y);
      else c.lineTo(x, y);
    }
    if (closed) c.closePath();
  }

  private shape(drawing: Drawing): void {
    const c = this.context;
    const closed = isClosed(drawing);
    for (const rings of drawing.parts) {
      c.beginPath();
      for (const ring of rings) this.trace(ring, closed);
      if (closed) {
        c.fillStyle = this.colours["fill"]!;
        c.fill("evenodd");
      }
      c.strokeStyle = this.colours["outline"]!;
      c.lineWidth = 2;
      if (drawing.kind !== "points") c.stroke();
    }
  }

  private golden(drawing: Drawing): void {
    const c = this.context;
    c.beginPath();
    for (const ring of drawing.parts.flat()) this.trace(ring, isClosed(drawing));
    c.strokeStyle = this.colours["golden"]!;
    c.lineWidth = 2;
    c.setLineDash([3, 5]);
    c.stroke();
    c.setLineDash([]);
  }

  private piece({ points, level }: DeviationPiece): void {
    const c = this.context;
    c.beginPath();
    this.trace(points, false);
    c.strokeStyle = this.levelColour(level);
    c.lineWidth = 2 + 4 * Math.abs(level);
    c.stroke();
  }

  /** The colour of a deviation: chips and burrs away from what lies even. */
  levelColour(level: number): string {
    const far = this.colours[level < 0 ? "chip" : "burr"]!;
    return `color-mix(in srgb, ${far} ${Math.round(Math.min(1, Math.abs(level)) * 100)}%, ${this.colours["even"]!})`;
  }

  private figure(figure: Figure, colour: string, dash: readonly number[]): void {
    const c = this.context;
    c.beginPath();
    if (figure.type === "path") {
      this.trace(figure.points, figure.closed);
    } else if (figure.type === "dot") {
      const [x, y] = this.view.toScreen(...figure.at);
      c.arc(x, y, 3.5, 0, 2 * Math.PI);
      c.fillStyle = this.colours[colour.slice(2)]!;
      c.fill();
      return;
    } else {
      const [x, y] = this.view.toScreen(...figure.centre);
      const { scale } = this.view;
      c.ellipse(x, y, figure.a * scale, figure.b * scale, this.view.yUp ? -figure.angle : figure.angle, 0, 2 * Math.PI);
    }
    c.strokeStyle = this.colours[colour.slice(2)]!;
    c.lineWidth = 1.75;
    c.setLineDash(dash as number[]);
    c.stroke();
    c.setLineDash([]);
  }

  private handles(scene: Scene): void {
    const { drawing, cursor } = scene;
    const all = pointCount(drawing) <= MOST_HANDLES;
    const c = this.context;
    c.beginPath();
    for (const ring of drawing.parts.flat()) {
      for (let i = 0; i < ring.length; i += 2) {
        const [x, y] = this.view.toScreen(ring[i]!, ring[i + 1]!);
        if (!all && (cursor === null || Math.abs(x - cursor[0]) > NEAR || Math.abs(y - cursor[1]) > NEAR)) continue;
        c.moveTo(x + 3.5, y);
        c.arc(x, y, 3.5, 0, 2 * Math.PI);
      }
    }
    c.fillStyle = this.colours["surface"]!;
    c.fill();
    c.strokeStyle = this.colours["handle"]!;
    c.lineWidth = 1.5;
    c.stroke();
    if (scene.hovered !== null) this.ringAround(drawing, scene.hovered, 7);
    if (scene.selected !== null && scene.focused) this.ringAround(drawing, scene.selected, 9);
  }

  private ringAround(drawing: Drawing, at: VertexAt, radius: number): void {
    const [x, y] = this.view.toScreen(...pointOf(drawing, at));
    const c = this.context;
    c.beginPath();
    c.arc(x, y, radius, 0, 2 * Math.PI);
    c.strokeStyle = this.colours["handle"]!;
    c.lineWidth = 2.5;
    c.stroke();
  }

  private problem(problem: Problem, number: number): void {
    const [x, y] = this.view.toScreen(...problem.point);
    if (!Number.isFinite(x) || !Number.isFinite(y)) return;
    const c = this.context;
    c.beginPath();
    c.arc(x, y, 9, 0, 2 * Math.PI);
    c.fillStyle = this.colours["bad"]!;
    c.fill();
    c.fillStyle = this.colours["surface"]!;
    c.font = "bold 11px system-ui, sans-serif";
    c.textAlign = "center";
    c.textBaseline = "middle";
    c.fillText(String(number), x, y + 0.5);
    c.textAlign = "start";
    c.textBaseline = "alphabetic";
  }

  private beingDrawn({ drawn, cursor }: Scene): void {
    const c = this.context;
    c.beginPath();
    this.trace(drawn, false);
    if (cursor !== null) c.lineTo(cursor[0], cursor[1]);
    c.strokeStyle = this.colours["outline"]!;
    c.lineWidth = 2;
    c.stroke();
    const [x, y] = this.view.toScreen(drawn[0]!, drawn[1]!);
    c.beginPath();
    c.arc(x, y, 6, 0, 2 * Math.PI);
    c.fillStyle = this.colours["outline"]!;
    c.fill();
  }

  private nearest(location: Location, cursor: readonly [number, number]): void {
    if (location.nearest === null) return;
    const [x, y] = this.view.toScreen(...location.nearest.point);
    const c = this.context;
    c.beginPath();
    c.moveTo(cursor[0], cursor[1]);
    c.lineTo(x, y);
    c.strokeStyle = this.colours[location.state]!;
    c.fillStyle = this.colours[location.state]!;
    c.lineWidth = 1.5;
    c.setLineDash(location.state === "inside" ? [] : [5, 3]);
    c.stroke();
    c.setLineDash([]);
    c.beginPath();
    c.arc(x, y, 4.5, 0, 2 * Math.PI);
    c.fill();
  }
}
