// What is drawn: rings of coordinates.  A drawing is never changed after it was put into the history; whoever
// drags works on a copy.
import type { Kind, Shape } from "../interface/gxshape";

export interface Drawing {
  kind: Kind;
  /** Of each part its rings, outline first, x and y after each other. */
  parts: Float64Array[][];
  id: string;
}

/** A vertex: which part, which ring of it, which point of that. */
export interface VertexAt {
  part: number;
  ring: number;
  index: number;
}

export const EMPTY: Drawing = { kind: "region", parts: [], id: "" };

export function drawingOf(shape: Shape): Drawing {
  return { kind: shape.kind, parts: shape.parts(), id: shape.id };
}

export function isClosed(drawing: Drawing): boolean {
  return drawing.kind === "region" || drawing.kind === "set";
}

export function copied(drawing: Drawing): Drawing {
  return { ...drawing, parts: drawing.parts.map((rings) => rings.map((ring) => ring.slice())) };
}

export function pointCount(drawing: Drawing): number {
  return drawing.parts.flat().reduce((sum, ring) => sum + ring.length / 2, 0);
}

/** The number of a vertex over all rings, as the library counts points. */
export function flatIndex(drawing: Drawing, at: VertexAt): number {
  let index = at.index;
  for (let p = 0; p <= at.part; ++p) {
    const rings = drawing.parts[p]!;
    for (let r = 0; r < (p === at.part ? at.ring : rings.length); ++r) index += rings[r]!.length / 2;
  }
  return index;
}

/** The vertex of that number, the other way round. */
export function vertexAt(drawing: Drawing, flat: number): VertexAt | null {
  let index = flat;
  for (let part = 0; part < drawing.parts.length; ++part) {
    for (let ring = 0; ring < drawing.parts[part]!.length; ++ring) {
      const count = drawing.parts[part]![ring]!.length / 2;
      if (index < count) return { part, ring, index };
      index -= count;
    }
  }
  return null;
}

export function pointOf(drawing: Drawing, at: VertexAt): [number, number] {
  const ring = drawing.parts[at.part]![at.ring]!;
  return [ring[2 * at.index]!, ring[2 * at.index + 1]!];
}

/** x min, y min, x max, y max of the finite points; null where there are none. */
export function boxOf(drawings: readonly Drawing[]): [number, number, number, number] | null {
  const box: [number, number, number, number] = [Infinity, Infinity, -Infinity, -Infinity];
  for (const ring of drawings.flatMap((d) => d.parts.flat())) {
    for (let i = 0; i + 1 < ring.length; i += 2) {
      const [x, y] = [ring[i]!, ring[i + 1]!];
      if (!Number.isFinite(x) || !Number.isFinite(y)) continue;
      box[0] = Math.min(box[0], x);
      box[1] = Math.min(box[1], y);
      box[2] = Math.max(box[2], x);
      box[3] = Math.max(box[3], y);
    }
  }
  return box[0] <= box[2] ? box : null;
}

function withRing(drawing: Drawing, part: number, ring: number, points: Float64Array | null): Drawing {
  const parts = drawing.parts.map((rings, p) => {
    if (p !== part) return rings;
    if (points !== null) return rings.map((old, r) => (r === ring ? points : old));
    return ring === 0 ? [] : rings.filter((_, r) => r !== ring);
  });
  return { ...drawing, parts: parts.filter((rings) => rings.length > 0) };
}

/** Without that vertex; a ring that would have fewer than three goes, and with an outline its holes. */
export function withoutVertex(drawing: Drawing, at: VertexAt): Drawing {
  const ring = drawing.parts[at.part]![at.ring]!;
  const least = isClosed(drawing) ? 3 : 1;
  if (ring.length / 2 <= least) return withRing(drawing, at.part, at.ring, null);
  const kept = Array.from(ring);
  kept.splice(2 * at.index, 2);
  return withRing(drawing, at.part, at.ring, Float64Array.from(kept));
}

/** With a vertex more, behind the one named. */
export function withVertexAfter(drawing: Drawing, at: VertexAt, x: number, y: number): Drawing {
  const ring = Array.from(drawing.parts[at.part]![at.ring]!);
  ring.splice(2 * at.index + 2, 0, x, y);
  return withRing(drawing, at.part, at.ring, Float64Array.from(ring));
}

/** With a hole more in that part. */
export function withHole(drawing: Drawing, part: number, hole: Float64Array): Drawing {
  return { ...drawing, parts: drawing.parts.map((rings, p) => (p === part ? [...rings, hole] : rings)) };
}

/** Even-odd over the rings of one part: good enough to say what was meant by a press, and for nothing else. */
export function looksInside(rings: readonly Float64Array[], x: number, y: number): boolean {
  let inside = false;
  for (const ring of rings) {
    for (let i = 0, j = ring.length - 2; i < ring.length; j = i, i += 2) {
      const [ax, ay, bx, by] = [ring[j]!, ring[j + 1]!, ring[i]!, ring[i + 1]!];
      if (ay > y !== by > y && x < ax + ((bx - ax) * (y - ay)) / (by - ay)) inside = !inside;
    }
  }
  return inside;
}
