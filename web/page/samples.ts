// Shapes to begin with.  Those of files are put in when the page is built (`files`), as JSON lines.
import type { Drawing } from "./drawing";

/** A sample: its title, and its drawing or the text of a file. */
export interface Sample {
  title: string;
  drawing?: () => Drawing;
  text?: string;
  yUp?: boolean;
}

const region = (...rings: number[][]): Drawing => ({ kind: "region", parts: [rings.map((r) => Float64Array.from(r))], id: "" });

/** The plate that the page begins with: rounded corners, a hole, a slot. */
export function plate(): Drawing {
  const hole: number[] = [];
  for (let i = 0; i < 16; ++i) {
    const angle = (-2 * Math.PI * i) / 16;
    hole.push(Math.round(285 + 42 * Math.cos(angle)), Math.round(150 + 42 * Math.sin(angle)));
  }
  return region([40, 60, 60, 40, 340, 40, 360, 60, 360, 240, 340, 260, 210, 260, 210, 190, 180, 160, 150, 190, 150, 260, 60, 260, 40, 240], hole);
}

/** A gear with so many vertices, for those who want to see how it holds. */
export function gear(vertices: number): Drawing {
  const points: number[] = [];
  for (let i = 0; i < vertices; ++i) {
    const angle = (2 * Math.PI * i) / vertices;
    const tooth = Math.tanh(4 * Math.sin(24 * angle));
    const radius = 400 + 40 * tooth + 1.5 * Math.sin(311 * angle);
    points.push(500 + radius * Math.cos(angle), 500 + radius * Math.sin(angle));
  }
  return region(points);
}

export function samples(files: Record<string, string>): Sample[] {
  return [
    { title: "Plate with a hole", drawing: plate },
    { title: "Bow tie (crosses itself)", drawing: () => region([60, 60, 60, 240, 340, 60, 340, 240]) },
    { title: "Star drawn in one line", drawing: () => region([200, 20, 276, 255, 77, 110, 323, 110, 124, 255]) },
    { title: "Coins, 24 outlines", text: files["coins"] ?? "" },
    { title: "Countries with holes (degrees)", text: files["countries"] ?? "", yUp: true },
    { title: "Tangled outlines", text: files["tangled"] ?? "" },
    { title: "Gear, 10,000 vertices", drawing: () => gear(10_000) },
  ];
}
