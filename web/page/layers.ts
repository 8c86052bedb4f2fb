// What is drawn over an outline, as the library says it: computed with the measures, drawn on the canvas and
// written into the SVG from one list.
import type { Description, Point, Shape } from "../interface/gxshape";

export interface Layer {
  name: string;
  label: string;
  /** CSS variable of its colour. */
  colour: string;
  /** Lengths of dashes and gaps in pixels: no layer is told by its colour alone. */
  dash: readonly number[];
}

export const LAYERS: readonly Layer[] = [
  { name: "hull", label: "Hull", colour: "--hull", dash: [7, 4] },
  { name: "circle", label: "Circle", colour: "--circle", dash: [] },
  { name: "rectangle", label: "Rectangle", colour: "--rectangle", dash: [10, 3, 2, 3] },
  { name: "ellipse", label: "Ellipse", colour: "--ellipse", dash: [2, 3] },
  { name: "axes", label: "Axes", colour: "--axes", dash: [14, 4] },
  { name: "feret", label: "Feret", colour: "--feret", dash: [4, 2] },
  { name: "inscribed", label: "Inscribed", colour: "--inscribed", dash: [1, 3] },
  { name: "wall", label: "Wall", colour: "--wall", dash: [] },
];

/** A piece of a layer, in coordinates. */
export type Figure =
  | { type: "path"; points: ArrayLike<number>; closed: boolean }
  | { type: "ellipse"; centre: Point; a: number; b: number; angle: number }
  | { type: "dot"; at: Point };

export type Figures = Map<string, Figure[]>;

const line = (...points: Point[]): Figure => ({ type: "path", points: points.flat(), closed: false });
const allFinite = (...numbers: number[]) => numbers.every(Number.isFinite);

function along(centre: Point, angle: number, length: number): [Point, Point] {
  const [dx, dy] = [Math.cos(angle) * length, Math.sin(angle) * length];
  return [[centre[0] - dx, centre[1] - dy], [centre[0] + dx, centre[1] + dy]];
}

type Maker = (shape: Shape, d: Description) => Figure[];

const MAKERS: Record<string, Maker> = {
  hull: (shape) => {
    const hull = shape.hull();
    try {
      return hull.parts().flat().map((points) => ({ type: "path", points, closed: true }));
    } finally {
      hull.dispose();
    }
  },
  circle: (_, d) => circleFigures(d.enclosing_circle_centre, d.enclosing_circle_radius),
  rectangle: (shape) => {
    const corners = shape.rectangleCorners().flat();
    return allFinite(...corners) ? [{ type: "path", points: corners, closed: true }] : [];
  },
  ellipse: (_, d) =>
    allFinite(d.ellipse_a, d.ellipse_b, ...d.centre)
      ? [{ type: "ellipse", centre: d.centre, a: d.ellipse_a, b: d.ellipse_b, angle: d.ellipse_angle }]
      : [],
  axes: (_, d) => {
    if (!allFinite(d.ellipse_a, d.ellipse_b, ...d.centre)) return [];
    return [
      line(...along(d.centre, d.ellipse_angle, d.ellipse_a)),
      line(...along(d.centre, d.ellipse_angle + Math.PI / 2, d.ellipse_b)),
      { type: "dot", at: d.centre },
    ];
  },
  feret: (shape) => {
    const { max, min } = shape.feretEnds();
    return [max, min].filter((ends) => allFinite(...ends.flat())).map((ends) => line(...ends));
  },
};

export function circleFigures(centre: Point, radius: number): Figure[] {
  if (!allFinite(radius, ...centre)) return [];
  return [{ type: "ellipse", centre, a: radius, b: radius, angle: 0 }, { type: "dot", at: centre }];
}

export function wallFigures(from: Point | undefined, to: Point | undefined): Figure[] {
  return from === undefined || to === undefined ? [] : [line(from, to), { type: "dot", at: from }, { type: "dot", at: to }];
}

/** The figures of those layers that take little time. */
export function figuresOf(shape: Shape, description: Description, wanted: ReadonlySet<string>): Figures {
  const figures: Figures = new Map();
  for (const name of wanted) {
    const make = MAKERS[name];
    if (make !== undefined) figures.set(name, make(shape, description));
  }
  return figures;
}
