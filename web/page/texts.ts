// Sentences of the page: the help, and the same shape in the other languages.
import type { Drawing } from "./drawing";
import { isClosed } from "./drawing";

export const HELP: readonly [keys: string, what: string][] = [
  ["N", "new outline: press for each vertex, or draw it by hand"],
  ["H", "a hole, drawn the same way"],
  ["Enter", "closes the outline that is being drawn; Esc drops it"],
  [". ,", "next and previous vertex (the outline is one stop of Tab)"],
  ["Arrows", "move the vertex by about a pixel; Shift 10, Alt a tenth"],
  ["Insert", "splits the edge behind the vertex; a double press does so anywhere"],
  ["Delete", "removes the vertex; a long press of a finger does, too"],
  ["Ctrl Z", "undo; Shift Ctrl Z or Ctrl Y redo"],
  ["Ctrl C, V", "copy and paste the shape as WKT (pasting takes GeoJSON, CSV and JSON lines, too)"],
  ["+ − 0", "zoom in, out, show all; the wheel and two fingers zoom as well"],
];

/** What is said of a shape whose measures have a status. */
export const STATUS_TEXTS: Record<string, string> = {
  empty: "There are no points.",
  not_finite: "A coordinate is NaN or infinite: there are no numbers.",
  not_closed: "An open line has a length and widths, and no area.",
  flat: "All points lie on one line, or the turns cancel: there is no area.",
  negative: "The holes take away more than there is.",
  crossing: "The outline crosses itself; the numbers are of its signed area.",
};

function listOf(ring: Float64Array, open: string, close: string): string {
  const pairs: string[] = [];
  for (let i = 0; i < ring.length; i += 2) pairs.push(`${open}${ring[i]}, ${ring[i + 1]}${close}`);
  return pairs.join(", ");
}

/** More points than a person would paste into a program. */
const MOST_POINTS = 200;

/** The measures of the drawn shape as a program or command. */
export function codeOf(language: string, drawing: Drawing, wkt: string): string {
  const rings = drawing.parts[0] ?? [];
  const count = drawing.parts.flat().reduce((sum, ring) => sum + ring.length / 2, 0);
  if (count === 0) return "Draw an outline first.";
  if (count > MOST_POINTS || drawing.parts.length > 1 || !isClosed(drawing)) {
    return `# save it as shape.wkt (button “WKT”), then\ngxshape describe -o jsonl shape.wkt\ngxshape check shape.wkt\n`;
  }
  const [outline, ...holes] = rings;
  if (language === "tool") {
    return `echo '${wkt}' |\n  gxshape describe -o jsonl --only area,centre,circularity,feret_max\n`;
  }
  if (language === "python") {
    const holeText = holes.map((h) => `[${listOf(h, "[", "]")}]`).join(",\n                          ");
    return `import gxshape as gx\n\nshape = gx.Region([${listOf(outline!, "[", "]")}]` +
      (holes.length > 0 ? `,\n                  holes=[${holeText}]` : "") +
      `)\nprint(shape.area, shape.centre)\nprint(shape.check())\n`;
  }
  const holeText = holes.map((h) => `{${listOf(h, "{", "}")}}`).join(",\n                   ");
  return `#include <gxshape/gxshape.h>\n\n#include <iostream>\n\nint main() {\n  using Points = std::vector<gxVector<2>>;\n` +
    `  const gxRegion shape(Points{${listOf(outline!, "{", "}")}},\n                  std::vector<Points>{${holeText}});\n` +
    `  std::cout << gfDescribe(shape) << '\\n';\n  for (const auto& problem : gfCheck(shape)) std::cout << problem.sentence << '\\n';\n}\n`;
}
