// The drawing as an SVG file, in its own coordinates, with the layers that are shown.
import { boxOf, isClosed, type Drawing } from "./drawing";
import { LAYERS, type Figure, type Figures } from "./layers";

const escaped = (text: string) => text.replace(/[&<>"]/g, (c) => `&#${c.charCodeAt(0)};`);

function pathOf(points: ArrayLike<number>, closed: boolean): string {
  let path = "";
  for (let i = 0; i + 1 < points.length; i += 2) path += `${i === 0 ? "M" : "L"}${points[i]} ${points[i + 1]}`;
  return path + (closed ? "Z" : "");
}

function figureText(figure: Figure, stroke: string): string {
  if (figure.type === "path") return `<path d="${pathOf(figure.points, figure.closed)}" ${stroke}/>`;
  if (figure.type === "dot") return "";
  const [x, y] = figure.centre;
  const degrees = (figure.angle * 180) / Math.PI;
  return `<ellipse cx="${x}" cy="${y}" rx="${figure.a}" ry="${figure.b}" transform="rotate(${degrees} ${x} ${y})" ${stroke}/>`;
}

/** `colours` gives the value of a CSS variable. */
export function svgOf(drawing: Drawing, golden: Drawing | null, figures: Figures, yUp: boolean, colours: (name: string) => string): string {
  const box = boxOf(golden === null ? [drawing] : [drawing, golden]) ?? [0, 0, 1, 1];
  const margin = 0.06 * Math.max(box[2] - box[0], box[3] - box[1], 1e-9);
  const [x, y] = [box[0] - margin, box[1] - margin];
  const [w, h] = [box[2] - box[0] + 2 * margin, box[3] - box[1] + 2 * margin];
  const line = (colour: string, dash: readonly number[] = []) =>
    `fill="none" stroke="${colours(colour)}" stroke-width="1.5" vector-effect="non-scaling-stroke"` +
    (dash.length > 0 ? ` stroke-dasharray="${dash.join(" ")}"` : "");
  const closed = isClosed(drawing);
  const body = [`<title>${escaped(drawing.id || "outline")}</title>`];
  for (const rings of drawing.parts) {
    const fill = closed ? `fill="${colours("--fill")}" fill-rule="evenodd"` : 'fill="none"';
    body.push(`<path d="${rings.map((ring) => pathOf(ring, closed)).join("")}" ${fill} stroke="${colours("--outline")}" stroke-width="2" vector-effect="non-scaling-stroke"/>`);
  }
  for (const ring of golden?.parts.flat() ?? []) body.push(`<path d="${pathOf(ring, isClosed(golden!))}" ${line("--golden", [3, 5])}/>`);
  for (const layer of LAYERS) {
    for (const figure of figures.get(layer.name) ?? []) body.push(figureText(figure, line(layer.colour, layer.dash)));
  }
  const flip = yUp ? ` transform="translate(0 ${2 * y + h}) scale(1 -1)"` : "";
  return `<svg xmlns="http://www.w3.org/2000/svg" viewBox="${x} ${y} ${w} ${h}" width="800" height="${Math.round((800 * h) / w)}">\n<g${flip}>\n${body.filter(Boolean).join("\n")}\n</g>\n</svg>\n`;
}
