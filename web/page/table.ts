// The table of measures: made once, its numbers changed as the outline moves.
import { MEASURE_TYPES, MEASURE_WORDS, type Description, type Thickness } from "../interface/gxshape";

const GROUPS: readonly [title: string, names: readonly string[]][] = [
  ["Size", ["area", "filled_area", "perimeter", "length", "centre", "box", "points", "holes", "parts", "euler_number"]],
  ["Form", ["circularity", "solidity", "convexity", "compactness", "extent", "rectangularity", "aspect_ratio", "elongation", "eccentricity",
    "equivalent_diameter", "orientation"]],
  ["Width", ["feret_max", "feret_max_angle", "feret_min", "feret_min_angle", "feret_mean", "feret_across"]],
  ["Circle, rectangle, ellipse", ["enclosing_circle_radius", "enclosing_circle_centre", "inscribed_circle_radius", "inscribed_circle_centre",
    "rectangle_length", "rectangle_width", "rectangle_angle", "rectangle_centre", "ellipse_a", "ellipse_b", "ellipse_angle", "wall"]],
  ["Moments", ["moment_20", "moment_11", "moment_02", "moment_30", "moment_21", "moment_12", "moment_03",
    "eta_20", "eta_11", "eta_02", "eta_30", "eta_21", "eta_12", "eta_03", "hu_1", "hu_2", "hu_3", "hu_4", "hu_5", "hu_6", "hu_7"]],
];
const FOLDED = "Moments";
/** Found after the others: they come from the worker. */
const SLOW = new Set(["inscribed_circle_radius", "inscribed_circle_centre", "wall"]);

/** Digits as the tool's table has them, or all of them. */
export function numberText(value: number, allDigits: boolean): string {
  if (Number.isNaN(value)) return "–";
  if (!Number.isFinite(value)) return value > 0 ? "∞" : "−∞";
  const text = allDigits ? String(value) : String(Number.parseFloat(value.toPrecision(6)));
  return text.replace("-", "−");
}

/** All digits of a value, as JSON has them. */
function digitsOf(value: unknown): string {
  return Array.isArray(value) ? value.map(String).join(" ") : String(value);
}

export class MeasureTable {
  private readonly cells = new Map<string, HTMLTableCellElement>();
  private readonly texts = new Map<string, string>();
  degrees = false;
  allDigits = false;

  constructor(table: HTMLTableElement) {
    for (const [title, names] of GROUPS) {
      const body = table.createTBody();
      const head = body.insertRow();
      const cell = document.createElement("th");
      cell.colSpan = 3;
      cell.scope = "rowgroup";
      head.className = "group";
      head.append(cell);
      this.foldable(cell, body, title);
      for (const name of names) this.row(body, name);
    }
  }

  private foldable(cell: HTMLElement, body: HTMLElement, title: string): void {
    const button = document.createElement("button");
    button.type = "button";
    button.textContent = title;
    const fold = (folded: boolean) => {
      body.classList.toggle("folded", folded);
      button.setAttribute("aria-expanded", String(!folded));
    };
    button.addEventListener("click", () => fold(!body.classList.contains("folded")));
    fold(title === FOLDED);
    cell.append(button);
  }

  private row(body: HTMLTableSectionElement, name: string): void {
    const [unit, sentence] = MEASURE_WORDS[name]!;
    const row = body.insertRow();
    const head = document.createElement("th");
    head.scope = "row";
    head.textContent = name.replaceAll("_", " ");
    head.title = sentence;
    const value = document.createElement("td");
    value.dataset["name"] = name;
    const units = document.createElement("td");
    units.className = "unit";
    units.dataset["unit"] = unit;
    units.textContent = unit === "1" ? "" : unit.replace(/(\d)/, (d) => "⁰¹²³⁴⁵"[Number(d)]!);
    row.append(head, value, units);
    this.cells.set(name, value);
  }

  /** Shows measures; null: none yet. */
  show(description: Description | null): void {
    for (const name of this.cells.keys()) {
      if (!SLOW.has(name)) this.set(name, description === null ? undefined : description[name as keyof Description]);
    }
  }
  showSlow(thickness: Thickness | null): void {
    for (const name of SLOW) this.set(name, thickness === null ? undefined : thickness[name as keyof Thickness]);
  }

  private set(name: string, value: unknown): void {
    const cell = this.cells.get(name)!;
    const text = value === undefined ? "…" : this.textOf(name, value);
    if (this.texts.get(name) === text && cell.title === digitsOf(value)) return;
    this.texts.set(name, text);
    cell.textContent = text;
    cell.title = value === undefined ? "" : digitsOf(value);
    const unit = cell.nextElementSibling as HTMLElement;
    if (unit.dataset["unit"] === "rad") unit.textContent = this.degrees ? "°" : "rad";
  }

  private textOf(name: string, value: unknown): string {
    if (Array.isArray(value)) return value.map((v) => numberText(v as number, this.allDigits)).join(MEASURE_TYPES[name] === "box" ? "  " : ", ");
    const isAngle = MEASURE_WORDS[name]![0] === "rad";
    const number = value as number;
    return numberText(isAngle && this.degrees ? (number * 180) / Math.PI : number, this.allDigits);
  }
}
