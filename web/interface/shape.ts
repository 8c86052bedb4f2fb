// A shape of the library: what it is asked, under the names of the tool and of the Python package.
import { AnswerReader, NameLists, statusOf, type Place, type Point, type Status } from "./answers";
import type { Engine } from "./engine";
import { GxError } from "./errors";
import type { Description, Measure, Thickness } from "./names";

/** Points of one ring: pairs, or x and y after each other. */
export type RingLike = readonly (readonly [number, number])[] | Float64Array;
export type Kind = "empty" | "region" | "set" | "open" | "points";
export type Rule = "even-odd" | "non-zero" | "positive" | "outer";
export type State = "outside" | "border" | "inside";
export type TextFormat = "wkt" | "wkb" | "geojson" | "jsonl" | "csv";

/** Where a point lies, and what is nearest to it. */
export interface Location {
  state: State;
  /** Distance from the border, above 0 outside, below 0 inside. */
  signed_distance: number;
  /** Which region of a set the point is in; -1 for none. */
  region: number;
  distance: number;
  nearest: Place | null;
  status: Status;
}

export interface Problem {
  kind: string;
  point: Point;
  /** Numbers of the edges that take part, -1 where the whole ring is meant. */
  edges: [number, number];
  rings: [number, number];
  regions: [number, number];
  sentence: string;
}

export interface Check {
  valid: boolean;
  problems: Problem[];
}

export interface RepairReport {
  area_before: number;
  area_after: number;
  regions: number;
  holes: number;
  rings_dropped: number;
  rings_snapped: number;
  largest_move: number;
}

export interface DeviationSample {
  place: Place | null;
  deviation: number;
}

export interface Comparison {
  hausdorff: number;
  hausdorff_forward: number;
  hausdorff_back: number;
  deviation_max: number;
  deviation_min: number;
  deviation_rms: number;
  out_of_tolerance: number;
  status: Status;
  samples: DeviationSample[];
}

/** A dent of the outline: first, last and deepest vertex, depth and area. */
export interface Defect {
  start: number;
  end: number;
  deepest: number;
  depth: number;
  area: number;
}

export const KINDS: readonly Kind[] = ["empty", "region", "set", "open", "points"];
const RULES: readonly Rule[] = ["even-odd", "non-zero", "positive", "outer"];
export const FORMATS: readonly string[] = ["", "wkt", "wkb", "geojson", "jsonl", "csv", "ragged", "npz", "gxa"];
const STATES: readonly State[] = ["outside", "border", "inside"];

/** Returns the index of a word in its list.  Throws: GxError `bad_argument`. */
export function indexOfWord(list: readonly string[], word: string, what: string): number {
  const index = list.indexOf(word);
  if (index < 0) throw new GxError("bad_argument", `${what}: ${list.filter((w) => w).join(", ")}, not '${word}'`);
  return index;
}

/** Coordinates of a ring, x and y after each other. */
export function flatRing(ring: RingLike): Float64Array {
  if (!(ring instanceof Float64Array)) return Float64Array.from(ring.flat());
  if (ring.length % 2 !== 0) throw new GxError("bad_argument", `ring: ${ring.length} numbers are no pairs`);
  return ring;
}

const forgotten = new FinalizationRegistry<{ engine: Engine; address: number }>(({ engine, address }) => {
  try {
    engine.invoke("free", address);
  } catch {
    // The module has failed and is to be loaded anew; there is nothing left to give back.
  }
});

const disposeSymbol: typeof Symbol.dispose = Symbol.dispose ?? (Symbol.for("Symbol.dispose") as typeof Symbol.dispose);

/**
 * A region with holes, a set of regions, an open contour or bare points.  It lives in the module's memory until
 * `dispose` is called, or until JavaScript has forgotten it.
 */
export class Shape {
  private held: number;
  private layoutKnown: { kind: Kind; ringEnds: number[]; partEnds: number[]; points: number; id: string } | null = null;

  /** Use `region`, `set`, `open`, `points` or `read` of the library instead. */
  constructor(private readonly engine: Engine, private readonly names: NameLists, address: number) {
    this.held = address;
    forgotten.register(this, { engine, address }, this);
  }

  /** Where it lies in memory.  Throws: GxError `disposed`. */
  get address(): number {
    if (this.held === 0) throw new GxError("disposed", "the shape was disposed of");
    return this.held;
  }

  /** Gives the memory back; the shape cannot be used any more.  A second call does nothing. */
  dispose(): void {
    if (this.held === 0) return;
    forgotten.unregister(this);
    const address = this.held;
    this.held = 0;
    this.engine.invoke("free", address);
  }
  [disposeSymbol](): void {
    this.dispose();
  }

  // ---- What it is ----------------------------------------------------------------------------------------

  get kind(): Kind {
    return this.layout().kind;
  }
  get pointCount(): number {
    return this.layout().points;
  }
  /** What the record is called in its file; empty where it has no name. */
  get id(): string {
    return this.layout().id;
  }

  /** The coordinates: of each part its rings, outline first, x and y after each other. */
  parts(): Float64Array[][] {
    const { ringEnds, partEnds, points } = this.layout();
    const address = this.engine.invoke("points", this.address);
    const all = points === 0 ? new Float64Array(0) : this.engine.doubles(address, 2 * points);
    const rings = ringEnds.map((end, i) => all.slice(2 * (ringEnds[i - 1] ?? 0), 2 * end));
    return partEnds.map((end, i) => rings.slice(partEnds[i - 1] ?? 0, end));
  }

  /** Moves one point, counted over all rings. */
  movePoint(index: number, x: number, y: number): void {
    this.engine.numbers("move_point", this.address, index, x, y);
  }

  /** The shape as one line of text, digits such that the same doubles are read back. */
  toText(format: TextFormat): string {
    this.engine.numbers("write", this.address, indexOfWord(FORMATS, format, "format"));
    return this.engine.text();
  }
  toWkt(): string {
    return this.toText("wkt");
  }

  // ---- Measures ------------------------------------------------------------------------------------------

  /** Area, length, centre and box. */
  measure(): Measure {
    return this.names.object(0, this.engine.numbers("measure", this.address)) as unknown as Measure;
  }
  /** All measures that take little time, as the tool's `describe`. */
  describe(): Description {
    return this.names.object(1, this.engine.numbers("describe", this.address)) as unknown as Description;
  }
  /** The largest circle within, and the smallest wall. */
  thickness(): Thickness {
    return this.names.object(2, this.engine.numbers("thickness", this.address)) as unknown as Thickness;
  }
  /** The dents of the first outline. */
  defects(): Defect[] {
    const read = new AnswerReader(this.engine.numbers("defects", this.address));
    const found: Defect[] = [];
    while (!read.done) {
      const [start, end, deepest] = [read.number(), read.number(), read.number()];
      found.push({ start, end, deepest, depth: read.number(), area: read.number() });
    }
    return found;
  }
  /** Where the greatest width is taken, and the least: two points each. */
  feretEnds(): { max: [Point, Point]; min: [Point, Point] } {
    const read = new AnswerReader(this.engine.numbers("feret_ends", this.address));
    return { max: [read.point(), read.point()], min: [read.point(), read.point()] };
  }
  /** The corners of the rectangle of least area. */
  rectangleCorners(): [Point, Point, Point, Point] {
    const read = new AnswerReader(this.engine.numbers("rectangle_corners", this.address));
    return [read.point(), read.point(), read.point(), read.point()];
  }

  // ---- Places --------------------------------------------------------------------------------------------

  /** Where a point lies; on the border is what is within `tolerance` of it. */
  locate(point: readonly [number, number], options: { tolerance?: number } = {}): Location {
    return this.locateEach(point, options)[0]!;
  }
  /** The same for many points. */
  locateEach(points: ArrayLike<number>, { tolerance = 0 } = {}): Location[] {
    const numbers = this.engine.withDoubles(points, (address) =>
      this.engine.numbers("locate", this.address, address, Math.floor(points.length / 2), tolerance));
    const read = new AnswerReader(numbers);
    const found: Location[] = [];
    while (!read.done) {
      const state = STATES[read.number() + 1]!;
      found.push({
        state,
        signed_distance: read.number(),
        region: read.number(),
        distance: read.number(),
        nearest: read.place(),
        status: read.status(),
      });
    }
    return found;
  }

  // ---- Checks and repairs --------------------------------------------------------------------------------

  /** What is wrong with the shape, up to so many problems. */
  check({ max = 100 } = {}): Check {
    const read = new AnswerReader(this.engine.numbers("check", this.address, Math.min(max, 0x7fffffff)));
    const lines = this.engine.text().split("\n");
    const valid = read.number() === 1;
    const problems: Problem[] = [];
    while (!read.done) {
      const line = lines[problems.length]!;
      const blank = line.indexOf(" ");
      read.number(); // the kind's number, which its word stands for
      problems.push({
        kind: line.slice(0, blank),
        point: read.point(),
        edges: read.pair(),
        rings: read.pair(),
        regions: read.pair(),
        sentence: line.slice(blank + 1),
      });
    }
    return { valid, problems };
  }

  /** The regions that the shape encloses by rule. */
  repair(rule: Rule = "even-odd"): { shape: Shape; report: RepairReport } {
    const shape = this.another("repair", indexOfWord(RULES, rule, "rule"));
    const read = new AnswerReader(this.engine.numbers("report", shape.address));
    const report = {
      area_before: read.number(),
      area_after: read.number(),
      regions: read.number(),
      holes: read.number(),
      rings_dropped: read.number(),
      rings_snapped: read.number(),
      largest_move: read.number(),
    };
    return { shape, report };
  }
  /** The outside of a region that crosses itself, walked around; of one that does not, the region itself. */
  regularized({ steps = 1e9 } = {}): Shape {
    return this.another("walk", 0, steps);
  }
  /** The same, cut to a single loop. */
  outerHull({ steps = 1e9 } = {}): Shape {
    return this.another("walk", 1, steps);
  }
  /** The convex hull of everything. */
  hull(): Shape {
    return this.another("hull");
  }

  /** How far the borders are from those of `golden`; sampled at the vertices, or every `step`. */
  compare(golden: Shape, { tolerance = Infinity, step = 0 } = {}): Comparison {
    const numbers = this.engine.numbers("compare", this.address, golden.address, tolerance, step);
    const read = new AnswerReader(numbers.slice(0, 7));
    const result: Comparison = {
      hausdorff: read.number(),
      hausdorff_forward: read.number(),
      hausdorff_back: read.number(),
      deviation_max: read.number(),
      deviation_min: read.number(),
      deviation_rms: read.number(),
      out_of_tolerance: read.number(),
      status: statusOf(numbers[7]!),
      samples: [],
    };
    const samples = new AnswerReader(numbers.slice(8));
    while (!samples.done) result.samples.push({ place: samples.place(), deviation: samples.number() });
    return result;
  }

  private another(name: string, ...values: number[]): Shape {
    return new Shape(this.engine, this.names, this.engine.made(name, this.address, ...values));
  }

  private layout() {
    if (this.layoutKnown !== null && this.held !== 0) return this.layoutKnown;
    const n = this.engine.numbers("layout", this.address);
    const [kind, points, rings, parts] = [n[0]!, n[1]!, n[2]!, n[3]!];
    this.layoutKnown = {
      kind: KINDS[kind]!,
      points,
      ringEnds: Array.from(n.slice(4, 4 + rings)),
      partEnds: Array.from(n.slice(4 + rings, 4 + rings + parts)),
      id: this.engine.text(),
    };
    return this.layoutKnown;
  }
}
