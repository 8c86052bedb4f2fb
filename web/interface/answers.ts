// Answers of the module as objects under the names of docs/names.csv.
import type { Engine } from "./engine";
import { MEASURE_TYPES } from "./names";

export type Point = [number, number];
export type Box = [number, number, number, number];

/** A place on a border; edges are numbered so that edge k ends at point k, the closing edge is 0. */
export interface Place {
  /** -1 the outline, k from 0 on the hole of that index. */
  ring: number;
  edge: number;
  /** From 0 at the start of the edge to 1 at its end. */
  t: number;
  point: Point;
}

/** Why there is no number, or what is special about it. */
export type Status =
  | "ok" | "empty" | "not_finite" | "bad_argument" | "not_closed" | "flat" | "none" | "undetermined"
  | "unbounded" | "worse" | "capped" | "not_on_grid" | "negative" | "crossing" | "stopped" | "failed";

// By number; the gap is kept for words to come.
const STATUSES: readonly Status[] = [
  "ok", "empty", "not_finite", "bad_argument", "not_closed", "flat", "none", "undetermined",
  "unbounded", "worse", "capped", "not_on_grid", "negative", "crossing", "stopped",
];

export function statusOf(number: number): Status {
  return STATUSES[number] ?? "failed";
}

/** What one value of an answer may be. */
export type Value = number | Point | Box | Place | Status | null;

/** Reads numbers from front to back. */
export class AnswerReader {
  private at = 0;
  constructor(readonly numbers: Float64Array) {}

  get done(): boolean {
    return this.at >= this.numbers.length;
  }
  number(): number {
    return this.numbers[this.at++]!;
  }
  point(): Point {
    return [this.number(), this.number()];
  }
  box(): Box {
    return [this.number(), this.number(), this.number(), this.number()];
  }
  pair(): [number, number] {
    return [this.number(), this.number()];
  }
  /** Null where the answer is no place. */
  place(): Place | null {
    const place = { ring: this.number(), edge: this.number(), t: this.number(), point: this.point() };
    return place.edge < 0 ? null : place;
  }
  status(): Status {
    return statusOf(this.number());
  }
  value(name: string): Value {
    if (name === "status") return this.status();
    switch (MEASURE_TYPES[name]) {
      case "point": return this.point();
      case "box": return this.box();
      case "place": return this.place();
      default: return this.number();
    }
  }
}

/** Which names the three functions of measures answer with, as the module itself lists them. */
export class NameLists {
  private readonly lists = new Map<number, string[]>();
  constructor(private readonly engine: Engine) {}

  object(which: number, numbers: Float64Array): Record<string, Value> {
    const reader = new AnswerReader(numbers);
    const result: Record<string, Value> = {};
    for (const name of this.of(which)) result[name] = reader.value(name);
    return result;
  }

  of(which: number): string[] {
    let names = this.lists.get(which);
    if (names === undefined) {
      this.engine.numbers("names", which);
      names = this.engine.text().split(" ");
      this.lists.set(which, names);
    }
    return names;
  }
}
