// The panels below and beside the canvas: problems, repairs side by side, deviation, records of a file.  Texts of
// files and links go in through textContent alone.
import type { Check, Comparison, GxError } from "../interface/gxshape";
import { boxOf, isClosed, pointCount, type Drawing } from "./drawing";
import type { RepairAnswer } from "./slow";
import { numberText } from "./table";

export function element<K extends keyof HTMLElementTagNameMap>(tag: K, className = "", text = ""): HTMLElementTagNameMap[K] {
  const made = document.createElement(tag);
  if (className !== "") made.className = className;
  if (text !== "") made.textContent = text;
  return made;
}

export function showProblems(list: HTMLElement, heading: HTMLElement, check: Check | null, go: (x: number, y: number) => void): void {
  list.replaceChildren();
  heading.className = "";
  if (check === null) {
    heading.textContent = "…";
    return;
  }
  heading.className = check.valid ? "good" : "bad";
  const count = check.problems.length;
  heading.textContent = check.valid ? "✓ Valid: nothing is wrong." : count === 100 ? "The first 100 problems" : `${count} problem${count === 1 ? "" : "s"}`;
  check.problems.forEach((problem, i) => {
    const item = element("li");
    const button = element("button", "problem");
    button.type = "button";
    button.append(element("span", "number", String(i + 1)), element("span", "", problem.sentence));
    button.title = `${problem.kind}: show it`;
    button.addEventListener("click", () => go(...problem.point));
    item.append(button);
    list.append(item);
  });
}

const TITLES: Record<string, string> = {
  "regularized": "Outside, walked around",
  "outer hull": "Outside as a single loop",
  "even-odd": "Rule even-odd",
  "non-zero": "Rule non-zero",
  "positive": "Rule positive",
  "outer": "Rule outer",
};

const SVG = "http://www.w3.org/2000/svg";
/** A small picture is one of at most so many points. */
const SMALL = 4000;

function smallPicture(drawing: Drawing, box: readonly number[], yUp: boolean): SVGSVGElement {
  const svg = document.createElementNS(SVG, "svg");
  const [w, h] = [box[2]! - box[0]!, box[3]! - box[1]!];
  const margin = 0.05 * Math.max(w, h, 1e-9);
  const y = yUp ? -box[3]! : box[1]!;
  svg.setAttribute("viewBox", `${box[0]! - margin} ${y - margin} ${w + 2 * margin} ${h + 2 * margin}`);
  svg.setAttribute("aria-hidden", "true");
  const skip = Math.max(1, Math.ceil(pointCount(drawing) / SMALL));
  for (const rings of drawing.parts) {
    const path = document.createElementNS(SVG, "path");
    let d = "";
    for (const ring of rings) {
      for (let i = 0; i < ring.length; i += 2 * skip) d += `${i === 0 ? "M" : "L"}${ring[i]} ${yUp ? -ring[i + 1]! : ring[i + 1]}`;
      d += "Z";
    }
    path.setAttribute("d", d);
    svg.append(path);
  }
  return svg;
}

function countsOf(repair: RepairAnswer): string {
  const drawing = repair.drawing!;
  const parts = drawing.parts.length;
  const holes = drawing.parts.reduce((sum, rings) => sum + rings.length - 1, 0);
  return `${parts} region${parts === 1 ? "" : "s"}, ${holes} hole${holes === 1 ? "" : "s"}`;
}

export function showRepairs(panel: HTMLElement, repairs: readonly RepairAnswer[], drawing: Drawing, yUp: boolean, take: (d: Drawing) => void): void {
  const box = boxOf([drawing]) ?? [0, 0, 1, 1];
  panel.replaceChildren(...repairs.map((repair) => {
    const card = element("article", "repair");
    card.dataset["name"] = repair.name;
    card.append(element("h3", "", TITLES[repair.name] ?? repair.name));
    if (repair.drawing === null) {
      card.append(element("p", "bad", repair.error));
      return card;
    }
    card.append(smallPicture(repair.drawing, box, yUp));
    const area = element("p", "area", `area ${numberText(repair.area, false)}`);
    area.title = String(repair.area);
    card.append(area, element("p", "", countsOf(repair)));
    const button = element("button", "", "Take this");
    button.type = "button";
    button.setAttribute("aria-label", `Take the repair: ${TITLES[repair.name]}`);
    button.addEventListener("click", () => take(repair.drawing!));
    card.append(button);
    return card;
  }));
}

export function showComparison(panel: HTMLElement, comparison: Comparison | null, tolerance: number, error: string): void {
  if (comparison === null) {
    panel.replaceChildren(...(error === "" ? [] : [element("p", "bad", error)]));
    return;
  }
  const rows: [string, number][] = [
    ["hausdorff", comparison.hausdorff],
    ["deviation_max", comparison.deviation_max],
    ["deviation_min", comparison.deviation_min],
    ["deviation_rms", comparison.deviation_rms],
  ];
  if (Number.isFinite(tolerance)) rows.push(["out_of_tolerance", comparison.out_of_tolerance]);
  const list = element("dl", "numbers");
  for (const [name, value] of rows) {
    const number = element("dd", "", numberText(value, false));
    number.title = String(value);
    number.dataset["name"] = name;
    list.append(element("dt", "", name.replaceAll("_", " ")), number);
  }
  panel.replaceChildren(list);
}

export function showRecords(list: HTMLElement, records: readonly Drawing[], current: number, search: string, choose: (i: number) => void): void {
  const wanted = search.trim().toLowerCase();
  const items: HTMLElement[] = [];
  records.forEach((record, i) => {
    const name = record.id === "" ? `record ${i + 1}` : record.id;
    if (wanted !== "" && !name.toLowerCase().includes(wanted)) return;
    const item = element("li");
    const button = element("button", i === current ? "current" : "");
    button.type = "button";
    if (i === current) button.setAttribute("aria-current", "true");
    const kind = isClosed(record) ? "" : `, ${record.kind}`;
    button.append(element("span", "", name), element("span", "faint", `${pointCount(record)} points${kind}`));
    button.addEventListener("click", () => choose(i));
    item.append(button);
    items.push(item);
  });
  list.replaceChildren(...items);
}

export function showFileErrors(list: HTMLElement, errors: readonly GxError[]): void {
  list.replaceChildren(...errors.slice(0, 20).map((error) => element("li", "bad", error.message)));
  if (errors.length > 20) list.append(element("li", "bad", `and ${errors.length - 20} more`));
}
