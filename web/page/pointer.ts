// Mouse, pen and fingers on the canvas.
//
//   editing    a press on a vertex drags it, on an edge both its ends, on material the whole, beside it the view
//              (a finger beside it asks where it is, as the mouse does by hovering); two fingers move and zoom
//   drawing    each press is a vertex; a press that is drawn out is a line by hand; the first vertex, a double
//              press, Enter or the end of a line by hand closes
//
// A long press of a finger on a vertex deletes it; a double press on an edge inserts one.
import { isClosed, looksInside, type Drawing, type VertexAt } from "./drawing";
import type { View } from "./view";

export interface Grip {
  vertices: VertexAt[];
  kind: "vertex" | "edge" | "whole";
}

/** What the pointer does to the page. */
export interface PointerTarget {
  readonly drawing: Drawing;
  readonly view: View;
  readonly isDrawing: boolean;
  addDrawnPoint(x: number, y: number): void;
  nearFirstDrawn(px: number, py: number, reach: number): boolean;
  finishDrawing(): void;
  beginDrag(grip: Grip): void;
  dragBy(dx: number, dy: number): void;
  endDrag(): void;
  cancelDrag(): void;
  probe(px: number, py: number, reach: number, hover: boolean): void;
  leave(): void;
  insertAt(edge: VertexAt, x: number, y: number): void;
  deleteVertex(at: VertexAt): void;
  viewChanged(): void;
}

const LONG_PRESS = 600;
const REACH = { mouse: 10, touch: 22 };
/** A press that goes this far is a line by hand, and so far apart are its points. */
const HAND = 14;
const HAND_STEP = 5;

/** The nearest vertex within so many pixels. */
export function vertexNear(drawing: Drawing, view: View, px: number, py: number, reach: number): VertexAt | null {
  let found: VertexAt | null = null;
  let best = reach * reach;
  const [x, y] = view.toWorld(px, py);
  const s2 = view.scale * view.scale;
  drawing.parts.forEach((rings, part) => {
    rings.forEach((points, ring) => {
      for (let i = 0; i < points.length; i += 2) {
        const [dx, dy] = [points[i]! - x, points[i + 1]! - y];
        const d2 = (dx * dx + dy * dy) * s2;
        if (d2 <= best) {
          best = d2;
          found = { part, ring, index: i / 2 };
        }
      }
    });
  });
  return found;
}

/** The nearest edge within so many pixels, by the vertex where it begins. */
export function edgeNear(drawing: Drawing, view: View, px: number, py: number, reach: number): VertexAt | null {
  if (drawing.kind === "points") return null;
  let found: VertexAt | null = null;
  let best = reach / view.scale;
  const [x, y] = view.toWorld(px, py);
  drawing.parts.forEach((rings, part) => {
    rings.forEach((points, ring) => {
      const count = points.length / 2;
      const edges = isClosed(drawing) ? count : count - 1;
      for (let i = 0; i < edges; ++i) {
        const j = (i + 1) % count;
        const distance = fromSegment(x, y, points[2 * i]!, points[2 * i + 1]!, points[2 * j]!, points[2 * j + 1]!);
        if (distance <= best) {
          best = distance;
          found = { part, ring, index: i };
        }
      }
    });
  });
  return found;
}

function fromSegment(x: number, y: number, ax: number, ay: number, bx: number, by: number): number {
  const [dx, dy] = [bx - ax, by - ay];
  const length2 = dx * dx + dy * dy;
  const t = length2 > 0 ? Math.max(0, Math.min(1, ((x - ax) * dx + (y - ay) * dy) / length2)) : 0;
  return Math.hypot(x - ax - t * dx, y - ay - t * dy);
}

export class PointerInput {
  private readonly pressed = new Map<number, [number, number]>();
  private mode: "none" | "drag" | "pan" | "probe" | "draw" | "pinch" = "none";
  private start: [number, number] = [0, 0];
  private last: [number, number] = [0, 0];
  private byHand = false;
  private longPress: ReturnType<typeof setTimeout> | undefined;

  constructor(private readonly canvas: HTMLCanvasElement, private readonly target: PointerTarget) {
    canvas.addEventListener("pointerdown", (e) => this.down(e));
    canvas.addEventListener("pointermove", (e) => this.move(e));
    canvas.addEventListener("pointerup", (e) => this.up(e));
    canvas.addEventListener("pointercancel", (e) => this.cancel(e));
    canvas.addEventListener("pointerleave", () => this.mode === "none" && target.leave());
    canvas.addEventListener("dblclick", (e) => this.double(e));
    canvas.addEventListener("contextmenu", (e) => e.preventDefault());
    canvas.addEventListener("wheel", (e) => this.wheel(e), { passive: false });
  }

  private at(e: MouseEvent): [number, number] {
    const box = this.canvas.getBoundingClientRect();
    return [e.clientX - box.left, e.clientY - box.top];
  }
  private reach(e: PointerEvent): number {
    return e.pointerType === "touch" ? REACH.touch : REACH.mouse;
  }

  private down(e: PointerEvent): void {
    if (e.pointerType === "mouse" && e.button > 1) return;
    this.canvas.setPointerCapture(e.pointerId);
    const at = this.at(e);
    this.pressed.set(e.pointerId, at);
    this.start = this.last = at;
    clearTimeout(this.longPress);
    if (this.pressed.size === 2) return this.beginPinch();
    if (this.pressed.size > 2) return;
    if (e.button === 1) this.mode = "pan";
    else if (this.target.isDrawing) this.beginStroke(at, this.reach(e));
    else this.beginEdit(at, e);
  }

  private beginPinch(): void {
    if (this.mode === "drag") this.target.cancelDrag();
    this.mode = "pinch";
  }

  private beginStroke(at: [number, number], reach: number): void {
    this.mode = "draw";
    this.byHand = false;
    if (this.target.nearFirstDrawn(...at, reach)) {
      this.mode = "none";
      this.target.finishDrawing();
      return;
    }
    this.target.addDrawnPoint(...this.target.view.toWorld(...at));
  }

  private beginEdit(at: [number, number], e: PointerEvent): void {
    const { drawing, view } = this.target;
    const reach = this.reach(e);
    const vertex = vertexNear(drawing, view, ...at, reach);
    if (vertex !== null) {
      this.mode = "drag";
      this.target.beginDrag({ kind: "vertex", vertices: [vertex] });
      if (e.pointerType === "touch") this.waitForLongPress(vertex);
      return;
    }
    const edge = edgeNear(drawing, view, ...at, reach * 0.7);
    if (edge !== null) {
      this.mode = "drag";
      this.target.beginDrag({ kind: "edge", vertices: [edge, this.nextOf(edge)] });
      return;
    }
    const part = drawing.parts.findIndex((rings) => looksInside(rings, ...view.toWorld(...at)));
    if (part >= 0 && isClosed(drawing)) {
      this.mode = "drag";
      const vertices = drawing.parts[part]!.flatMap((ring, r) =>
        Array.from({ length: ring.length / 2 }, (_, index) => ({ part, ring: r, index })));
      this.target.beginDrag({ kind: "whole", vertices });
      return;
    }
    this.mode = e.pointerType === "touch" ? "probe" : "pan";
    if (this.mode === "probe") this.target.probe(...at, reach, false);
  }

  private nextOf(edge: VertexAt): VertexAt {
    const count = this.target.drawing.parts[edge.part]![edge.ring]!.length / 2;
    return { ...edge, index: (edge.index + 1) % count };
  }

  private waitForLongPress(vertex: VertexAt): void {
    this.longPress = setTimeout(() => {
      if (this.mode !== "drag") return;
      this.mode = "none";
      this.target.cancelDrag();
      this.target.deleteVertex(vertex);
    }, LONG_PRESS);
  }

  private move(e: PointerEvent): void {
    const at = this.at(e);
    if (this.pressed.has(e.pointerId)) this.movePressed(e, at);
    else this.target.probe(...at, this.reach(e), true);
  }

  private movePressed(e: PointerEvent, at: [number, number]): void {
    if (this.mode === "pinch") return this.pinch(e.pointerId, at);
    this.pressed.set(e.pointerId, at);
    const { view } = this.target;
    const [dx, dy] = [at[0] - this.last[0], at[1] - this.last[1]];
    const gone = Math.hypot(at[0] - this.start[0], at[1] - this.start[1]);
    if (gone > 6) clearTimeout(this.longPress);
    if (this.mode === "draw") return this.stroke(at, gone);
    if (this.mode === "probe") this.target.probe(...at, this.reach(e), false);
    if (this.mode === "pan") {
      view.pan(dx, dy);
      this.target.viewChanged();
    }
    if (this.mode === "drag" && (dx !== 0 || dy !== 0)) {
      this.target.dragBy(dx / view.scale, dy / view.sy);
      this.target.probe(...at, this.reach(e), false);
    }
    this.last = at;
  }

  private stroke(at: [number, number], gone: number): void {
    if (!this.byHand && gone < HAND) return;
    this.byHand = true;
    if (Math.hypot(at[0] - this.last[0], at[1] - this.last[1]) < HAND_STEP) return;
    this.target.addDrawnPoint(...this.target.view.toWorld(...at));
    this.last = at;
  }

  private pinch(id: number, at: [number, number]): void {
    const others = [...this.pressed].filter(([other]) => other !== id);
    const old = this.pressed.get(id)!;
    const pivot = others[0]?.[1];
    this.pressed.set(id, at);
    if (pivot === undefined || others.length !== 1) return;
    const { view } = this.target;
    const before = Math.hypot(old[0] - pivot[0], old[1] - pivot[1]);
    const after = Math.hypot(at[0] - pivot[0], at[1] - pivot[1]);
    view.pan((at[0] - old[0]) / 2, (at[1] - old[1]) / 2);
    if (before > 0 && after > 0) view.zoom(after / before, (at[0] + pivot[0]) / 2, (at[1] + pivot[1]) / 2);
    this.target.viewChanged();
  }

  private up(e: PointerEvent): void {
    if (!this.pressed.delete(e.pointerId)) return;
    clearTimeout(this.longPress);
    if (this.mode === "pinch") {
      if (this.pressed.size === 0) this.mode = "none";
      return;
    }
    if (this.mode === "draw" && this.byHand) this.target.finishDrawing();
    if (this.mode === "drag") this.target.endDrag();
    this.mode = "none";
  }

  private cancel(e: PointerEvent): void {
    if (!this.pressed.delete(e.pointerId)) return;
    clearTimeout(this.longPress);
    if (this.mode === "drag") this.target.cancelDrag();
    this.mode = "none";
  }

  private double(e: MouseEvent): void {
    const at = this.at(e);
    const { target } = this;
    if (target.isDrawing) return target.finishDrawing();
    if (vertexNear(target.drawing, target.view, ...at, REACH.mouse) !== null) return;
    const edge = edgeNear(target.drawing, target.view, ...at, REACH.mouse);
    if (edge !== null) target.insertAt(edge, ...target.view.toWorld(...at));
  }

  private wheel(e: WheelEvent): void {
    e.preventDefault();
    const lines = e.deltaMode === 1 ? 30 : 1;
    this.target.view.zoom(Math.exp(-e.deltaY * lines * 0.0015), ...this.at(e));
    this.target.viewChanged();
  }
}
