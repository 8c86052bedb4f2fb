// Written by web/make_names.mjs from docs/names.csv.
import type { Box, Place, Point, Status } from "./answers";

/** Area, length, centre and box. */
export interface Measure {
  /** number of points of all rings */
  points: number;
  /** number of holes */
  holes: number;
  /** area, holes taken away [L2] */
  area: number;
  /** length of all borders, or of an open contour [L] */
  length: number;
  /** centre of the area; of the border where there is none [L] */
  centre: Point;
  /** upright box around the outlines [L] */
  box: Box;
  status: Status;
}

/** All measures of a shape that take little time. */
export interface Description {
  /** number of points of all rings */
  points: number;
  /** number of holes */
  holes: number;
  /** number of regions of a set; 1 for a region */
  parts: number;
  /** area, holes taken away [L2] */
  area: number;
  /** area with holes filled [L2] */
  filled_area: number;
  /** length of the outlines alone [L] */
  perimeter: number;
  /** length of all borders, or of an open contour [L] */
  length: number;
  /** centre of the area; of the border where there is none [L] */
  centre: Point;
  /** upright box around the outlines [L] */
  box: Box;
  /** diameter of the circle of that area [L] */
  equivalent_diameter: number;
  /** 4 pi filled area / perimeter squared */
  circularity: number;
  /** equivalent diameter of the filled area / largest Feret diameter */
  compactness: number;
  /** perimeter of the hull / perimeter */
  convexity: number;
  /** area / area of the hull */
  solidity: number;
  /** area / area of the box */
  extent: number;
  /** area / area of the least rectangle */
  rectangularity: number;
  /** length / width of the least rectangle */
  aspect_ratio: number;
  /** 1 - width / length of the least rectangle */
  elongation: number;
  /** of the ellipse of equal moments */
  eccentricity: number;
  /** long axis of the ellipse of equal moments, in (-pi/2, pi/2] [rad] */
  orientation: number;
  /** parts less holes */
  euler_number: number;
  /** largest width [L] */
  feret_max: number;
  /** least width [L] */
  feret_min: number;
  /** mean width over all directions [L] */
  feret_mean: number;
  /** width across the largest [L] */
  feret_across: number;
  /** direction of the largest width [rad] */
  feret_max_angle: number;
  /** direction of the least width [rad] */
  feret_min_angle: number;
  /** radius of the smallest enclosing circle [L] */
  enclosing_circle_radius: number;
  /** its centre [L] */
  enclosing_circle_centre: Point;
  /** long side of the rectangle of least area [L] */
  rectangle_length: number;
  /** its short side [L] */
  rectangle_width: number;
  /** direction of its long side [rad] */
  rectangle_angle: number;
  /** its centre [L] */
  rectangle_centre: Point;
  /** central moment of the area [L4] */
  moment_20: number;
  /** central moment of the area [L4] */
  moment_11: number;
  /** central moment of the area [L4] */
  moment_02: number;
  /** central moment of the area [L5] */
  moment_30: number;
  /** central moment of the area [L5] */
  moment_21: number;
  /** central moment of the area [L5] */
  moment_12: number;
  /** central moment of the area [L5] */
  moment_03: number;
  /** normalised central moment */
  eta_20: number;
  /** normalised central moment */
  eta_11: number;
  /** normalised central moment */
  eta_02: number;
  /** normalised central moment */
  eta_30: number;
  /** normalised central moment */
  eta_21: number;
  /** normalised central moment */
  eta_12: number;
  /** normalised central moment */
  eta_03: number;
  /** invariant of M. K. Hu */
  hu_1: number;
  /** invariant of M. K. Hu */
  hu_2: number;
  /** invariant of M. K. Hu */
  hu_3: number;
  /** invariant of M. K. Hu */
  hu_4: number;
  /** invariant of M. K. Hu */
  hu_5: number;
  /** invariant of M. K. Hu */
  hu_6: number;
  /** invariant of M. K. Hu */
  hu_7: number;
  /** long half axis of the ellipse [L] */
  ellipse_a: number;
  /** short half axis of the ellipse [L] */
  ellipse_b: number;
  /** direction of the long half axis [rad] */
  ellipse_angle: number;
  status: Status;
}

/** The largest circle within, and the smallest wall. */
export interface Thickness {
  /** radius of the largest circle within [L] */
  inscribed_circle_radius: number;
  /** its centre [L] */
  inscribed_circle_centre: Point;
  /** thinnest place of the material [L] */
  wall: number;
  /** one end of it [L] */
  wall_from: Place | null;
  /** the other end [L] */
  wall_to: Place | null;
  status: Status;
}

/** What kind of value each name has; `number` where none is told. */
export const MEASURE_TYPES: Record<string, string> = {
  centre: "point",
  box: "box",
  enclosing_circle_centre: "point",
  rectangle_centre: "point",
  at: "point",
  nearest: "place",
  from: "place",
  to: "place",
  inscribed_circle_centre: "point",
  wall_from: "place",
  wall_to: "place",
  point: "point",
  worst: "place",
};

/** Unit and sentence of each name, in the order of the tool. */
export const MEASURE_WORDS: Record<string, readonly [unit: string, sentence: string]> = {
  points: ["1", "number of points of all rings"],
  holes: ["1", "number of holes"],
  parts: ["1", "number of regions of a set; 1 for a region"],
  area: ["L2", "area, holes taken away"],
  filled_area: ["L2", "area with holes filled"],
  perimeter: ["L", "length of the outlines alone"],
  length: ["L", "length of all borders, or of an open contour"],
  centre: ["L", "centre of the area; of the border where there is none"],
  box: ["L", "upright box around the outlines"],
  equivalent_diameter: ["L", "diameter of the circle of that area"],
  circularity: ["1", "4 pi filled area / perimeter squared"],
  compactness: ["1", "equivalent diameter of the filled area / largest Feret diameter"],
  convexity: ["1", "perimeter of the hull / perimeter"],
  solidity: ["1", "area / area of the hull"],
  extent: ["1", "area / area of the box"],
  rectangularity: ["1", "area / area of the least rectangle"],
  aspect_ratio: ["1", "length / width of the least rectangle"],
  elongation: ["1", "1 - width / length of the least rectangle"],
  eccentricity: ["1", "of the ellipse of equal moments"],
  orientation: ["rad", "long axis of the ellipse of equal moments, in (-pi/2, pi/2]"],
  euler_number: ["1", "parts less holes"],
  feret_max: ["L", "largest width"],
  feret_min: ["L", "least width"],
  feret_mean: ["L", "mean width over all directions"],
  feret_across: ["L", "width across the largest"],
  feret_max_angle: ["rad", "direction of the largest width"],
  feret_min_angle: ["rad", "direction of the least width"],
  enclosing_circle_radius: ["L", "radius of the smallest enclosing circle"],
  enclosing_circle_centre: ["L", "its centre"],
  rectangle_length: ["L", "long side of the rectangle of least area"],
  rectangle_width: ["L", "its short side"],
  rectangle_angle: ["rad", "direction of its long side"],
  rectangle_centre: ["L", "its centre"],
  moment_20: ["L4", "central moment of the area"],
  moment_11: ["L4", "central moment of the area"],
  moment_02: ["L4", "central moment of the area"],
  moment_30: ["L5", "central moment of the area"],
  moment_21: ["L5", "central moment of the area"],
  moment_12: ["L5", "central moment of the area"],
  moment_03: ["L5", "central moment of the area"],
  eta_20: ["1", "normalised central moment"],
  eta_11: ["1", "normalised central moment"],
  eta_02: ["1", "normalised central moment"],
  eta_30: ["1", "normalised central moment"],
  eta_21: ["1", "normalised central moment"],
  eta_12: ["1", "normalised central moment"],
  eta_03: ["1", "normalised central moment"],
  hu_1: ["1", "invariant of M. K. Hu"],
  hu_2: ["1", "invariant of M. K. Hu"],
  hu_3: ["1", "invariant of M. K. Hu"],
  hu_4: ["1", "invariant of M. K. Hu"],
  hu_5: ["1", "invariant of M. K. Hu"],
  hu_6: ["1", "invariant of M. K. Hu"],
  hu_7: ["1", "invariant of M. K. Hu"],
  ellipse_a: ["L", "long half axis of the ellipse"],
  ellipse_b: ["L", "short half axis of the ellipse"],
  ellipse_angle: ["rad", "direction of the long half axis"],
  at: ["L", "the point that was asked about"],
  signed_distance: ["L", "distance from the border, above 0 outside"],
  region: ["1", "which region of a set the point is in; -1 for none"],
  distance: ["L", "distance from the border, or between borders"],
  nearest: ["L", "where the border is nearest"],
  from: ["L", "the place on the record's own border"],
  to: ["L", "the place on the other border"],
  count: ["1", "number of crossings of the borders"],
  inscribed_circle_radius: ["L", "radius of the largest circle within"],
  inscribed_circle_centre: ["L", "its centre"],
  wall: ["L", "thinnest place of the material"],
  wall_from: ["L", "one end of it"],
  wall_to: ["L", "the other end"],
  radius: ["L", "radius of the fitted circle"],
  residual: ["L", "root mean square of the distances from the fit, of the inliers"],
  point: ["L", "a point of the line"],
  angle: ["rad", "direction of the line, in (-pi/2, pi/2]"],
  deviation: ["L", "standard deviation of the points from the fit"],
  inliers: ["1", "number of points that belong to the fit"],
  roundness: ["L", "greatest less least distance from the centre"],
  outer_radius: ["L", "the greatest distance"],
  inner_radius: ["L", "the least distance"],
  straightness: ["L", "width of the zone of two parallel lines"],
  parallelism: ["L", "width across the datum's direction"],
  flat_angle: ["rad", "angle between two straight features, in [0, pi/2]"],
  profile: ["L", "width of the zone that lies evenly about the nominal outline"],
  worst: ["L", "where the profile deviates most"],
  peak: ["L", "the greatest deviation outwards, or to the left"],
  valley: ["L", "the greatest inwards, or to the right"],
  rms: ["L", "root mean square of the deviations"],
  area_before: ["L2", "area that the given rings enclose"],
  area_after: ["L2", "area of the result"],
  regions: ["1", "number of regions of the result"],
  rings_dropped: ["1", "rings of which nothing is left"],
  rings_snapped: ["1", "rings that were put on a grid"],
  largest_move: ["L", "the farthest that a vertex moved by that"],
  hausdorff: ["L", "the larger of both directed distances"],
  hausdorff_forward: ["L", "of the shape from the golden outline"],
  hausdorff_back: ["L", "of the golden outline from the shape"],
  deviation_max: ["L", "the largest signed deviation, above 0 outside"],
  deviation_min: ["L", "the least signed deviation"],
  deviation_rms: ["L", "root mean square of the deviations"],
  out_of_tolerance: ["1", "share of the border beyond --max"],
  frechet: ["L", "the shortest leash along both outlines"],
};
