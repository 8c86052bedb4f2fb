// What takes longer than a frame: problems, repairs, deviation, largest circle and smallest wall.  A worker answers,
// part by part; of the questions that come while it is at one, only the newest is asked.
import type { Check, Comparison, Gxshape, RepairReport, Rule, Shape, Thickness } from "../interface/gxshape";
import { GxError } from "../interface/gxshape";
import { drawingOf, isClosed, pointCount, type Drawing } from "./drawing";

export interface Question {
  drawing: Drawing;
  golden: Drawing | null;
  tolerance: number;
  thickness: boolean;
}

/** One way to repair: what came out of it, or why nothing did. */
export interface RepairAnswer {
  name: string;
  drawing: Drawing | null;
  area: number;
  report: RepairReport | null;
  error: string;
}

export type Part =
  | { part: "check"; check: Check }
  | { part: "repairs"; repairs: RepairAnswer[] }
  | { part: "comparison"; comparison: Comparison | null; error: string }
  | { part: "thickness"; thickness: Thickness | null };

const RULES: readonly Rule[] = ["even-odd", "non-zero", "positive", "outer"];
/** About ten seconds of walking; beyond, the answer is that it was stopped. */
const STEPS = 3e8;
/** Samples of the deviation around the whole border. */
const SAMPLES = 500;

function repaired(name: string, make: () => { shape: Shape; report: RepairReport | null }): RepairAnswer {
  try {
    const { shape, report } = make();
    const answer = { name, drawing: drawingOf(shape), area: shape.measure().area, report, error: "" };
    shape.dispose();
    return answer;
  } catch (error) {
    return { name, drawing: null, area: NaN, report: null, error: error instanceof Error ? error.message : String(error) };
  }
}

function repairsOf(shape: Shape): RepairAnswer[] {
  const walks = shape.kind !== "region" ? [] : [
    repaired("regularized", () => ({ shape: shape.regularized({ steps: STEPS }), report: null })),
    repaired("outer hull", () => ({ shape: shape.outerHull({ steps: STEPS }), report: null })),
  ];
  return [...walks, ...RULES.map((rule) => repaired(rule, () => shape.repair(rule)))];
}

function comparisonOf(gx: Gxshape, shape: Shape, golden: Drawing, tolerance: number): Part {
  const other = gx.shape(golden.kind, golden.parts);
  try {
    const step = shape.measure().length / SAMPLES;
    const comparison = shape.compare(other, { tolerance, step: step > 0 ? step : 0 });
    return { part: "comparison", comparison, error: "" };
  } catch (error) {
    if (!(error instanceof GxError)) throw error;
    return { part: "comparison", comparison: null, error: error.message };
  } finally {
    other.dispose();
  }
}

/** Answers a question part by part. */
export function answer(gx: Gxshape, question: Question, tell: (part: Part) => void): void {
  const shape = gx.shape(question.drawing.kind, question.drawing.parts);
  try {
    const check = shape.check();
    tell({ part: "check", check });
    if (question.golden !== null) tell(comparisonOf(gx, shape, question.golden, question.tolerance));
    else tell({ part: "comparison", comparison: null, error: "" });
    const area = isClosed(question.drawing);
    tell({ part: "repairs", repairs: area && !check.valid ? repairsOf(shape) : [] });
    tell({ part: "thickness", thickness: area && question.thickness ? shape.thickness() : null });
  } finally {
    shape.dispose();
  }
}

/** Within the worker: answers questions as they come. */
export function serve(load: () => Promise<Gxshape>): void {
  const loaded = load();
  self.onmessage = async ({ data }: MessageEvent<Question>) => {
    try {
      const gx = await loaded;
      answer(gx, data, (part) => self.postMessage({ part }));
      self.postMessage({ done: true });
    } catch (error) {
      self.postMessage({ done: true, error: String(error) });
    }
  };
}

/** Questions below this number of points are asked at once, others after a rest. */
const ASKED_AT_ONCE = 1500;
const REST = 100;
/** A worker that is at an old question for so long is ended, and another one begun. */
const PATIENCE = 15000;

/** On the side of the page. */
export class SlowAnswers {
  private worker: Worker | null = null;
  private next: Question | null = null;
  private isBusy = false;
  private isStale = false;
  private since = 0;
  private timer: ReturnType<typeof setTimeout> | undefined;

  /** `here` answers where no worker can be made. */
  constructor(private readonly source: string, private readonly here: (q: Question, tell: (part: Part) => void) => void,
    private readonly tell: (part: Part) => void, private readonly busy: (isBusy: boolean) => void) {}

  ask(question: Question): void {
    this.next = question;
    this.isStale = true;
    clearTimeout(this.timer);
    if (this.isBusy && performance.now() - this.since > PATIENCE) this.end();
    const wait = pointCount(question.drawing) <= ASKED_AT_ONCE ? 0 : REST;
    this.timer = setTimeout(() => this.send(), wait);
  }

  private end(): void {
    this.worker?.terminate();
    this.worker = null;
    this.isBusy = false;
  }

  private send(): void {
    if (this.isBusy || this.next === null) return;
    const question = this.next;
    this.next = null;
    this.isStale = false;
    this.worker ??= this.begin();
    if (this.worker === null) return this.here(question, this.tell);
    this.isBusy = true;
    this.since = performance.now();
    this.busy(true);
    this.worker.postMessage(question);
  }

  private begin(): Worker | null {
    try {
      const worker = new Worker(URL.createObjectURL(new Blob([this.source], { type: "text/javascript" })));
      worker.onmessage = ({ data }) => this.take(data);
      worker.onerror = (e) => this.take({ done: true, error: e.message });
      return worker;
    } catch {
      return null;
    }
  }

  private take(message: { part?: Part; done?: boolean; error?: string }): void {
    // Answers to an old question are shown while a small outline is dragged, and not of a large one that has changed.
    if (message.part !== undefined) this.tell(message.part);
    if (message.done !== true) return;
    if (message.error !== undefined) this.end();
    this.isBusy = false;
    if (this.isStale) this.send();
    if (!this.isBusy) this.busy(false);
  }
}
