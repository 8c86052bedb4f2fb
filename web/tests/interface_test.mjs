// The npm package in Node: what it answers, what it refuses, how it gives memory back.
import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { existsSync, mkdirSync, readFileSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { join } from "node:path";
import { test } from "node:test";
import { pathToFileURL } from "node:url";
import vm from "node:vm";
import { npm, root } from "./support.mjs";

const { load, GxError, MEASURE_WORDS } = await import(pathToFileURL(join(npm, "index.mjs")).href);
const gx = await load();

const square = [[0, 0], [40, 0], [40, 30], [0, 30]];
const hole = [[25, 10], [35, 10], [35, 20], [25, 20]];
const plate = () => gx.region(square, { holes: [hole] });
const bow = () => gx.region([[0, 0], [0, 3], [6, 0], [6, 6]]);

/** The error that a call throws. */
function thrown(call) {
  try {
    call();
  } catch (error) {
    assert.ok(error instanceof GxError, String(error));
    return error;
  }
  return assert.fail("nothing was thrown");
}

test("a plate with a hole has the measures that the tool's page shows", () => {
  assert.deepEqual(plate().measure(), {
    points: 8, holes: 1, area: 1100, length: 180, centre: [19.09090909090909, 15], box: [0, 0, 40, 30], status: "ok",
  });
  const d = plate().describe();
  assert.equal(d.circularity, 0.7693696294505615);
  assert.deepEqual([d.parts, d.euler_number, d.filled_area, d.perimeter], [1, 0, 1200, 140]);
  assert.deepEqual([d.rectangle_length, d.rectangle_width], [40, 30]);
  const t = plate().thickness();
  assert.deepEqual([t.inscribed_circle_radius, t.wall, t.status], [12.5, 5, "ok"]);
  assert.deepEqual(t.wall_from.point[0] + t.wall_to.point[0], 75);
});

test("a point lies inside, on the border or outside, so far from the nearest place", () => {
  const [outside, border, inside] = plate().locateEach([30, 15, 0, 12, 5, 5]);
  assert.deepEqual([outside.state, outside.signed_distance, outside.region], ["outside", 5, -1]);
  assert.deepEqual([border.state, border.signed_distance], ["border", 0]);
  assert.deepEqual([inside.state, inside.signed_distance, inside.region], ["inside", -5, 0]);
  assert.deepEqual(plate().locate([30, 12]).nearest, { ring: 0, edge: 1, t: 0.5, point: [30, 10] });
  assert.equal(plate().locate([-0.5, 12], { tolerance: 1 }).state, "border");
  assert.equal(plate().locate([NaN, 0]).status, "not_finite");
  assert.equal(plate().locate([NaN, 0]).nearest, null);
});

test("the widths, the rectangle, the hull and the dents say where they are taken", () => {
  const l = gx.region([[0, 0], [4, 0], [4, 1], [1, 1], [1, 3], [0, 3]]);
  assert.deepEqual(l.feretEnds().max.map((p) => p.join()).sort(), ["0,3", "4,0"]);
  assert.equal(l.rectangleCorners().length, 4);
  assert.deepEqual(l.hull().parts()[0][0].length, 10);
  assert.deepEqual(l.defects().map(({ start, end, deepest, area }) => [start, end, deepest, area]), [[2, 4, 3, 3]]);
});

test("an outline that crosses itself is told with kind, place and sentence, and repaired by rule", () => {
  const { valid, problems } = bow().check();
  assert.equal(valid, false);
  assert.deepEqual(problems, [{
    kind: "crossing", point: [2, 2], edges: [0, 2], rings: [-1, -1], regions: [0, 0],
    sentence: "edges 0 and 2 of the outline cross at (2, 2)",
  }]);
  assert.deepEqual(bow().check({ max: Infinity }).problems.length, 1);
  assert.deepEqual(plate().check(), { valid: true, problems: [] });
  const { shape, report } = bow().repair("even-odd");
  assert.equal(shape.toWkt(), "MULTIPOLYGON (((0 0, 2 2, 0 3, 0 0)), ((2 2, 6 0, 6 6, 2 2)))");
  assert.deepEqual([report.area_before, report.area_after, report.regions, report.holes], [9, 15, 2, 0]);
  assert.deepEqual([report.rings_dropped, report.rings_snapped, report.largest_move], [0, 0, 0]);
  assert.equal(bow().repair("positive").shape.measure().area, 12);
  assert.equal(bow().regularized().measure().area, 15);
  assert.equal(bow().outerHull().measure().area > 0, true);
  assert.equal(thrown(() => bow().regularized({ steps: 1 })).code, "stopped");
});

test("the deviation from a golden outline is signed, and its samples lie on the shape", () => {
  const golden = gx.region(square);
  const burr = gx.region([[0, 0], [20, -2], [40, 0], [40, 30], [20, 29], [0, 30]]);
  const c = burr.compare(golden, { tolerance: 1.5 });
  assert.deepEqual([c.hausdorff, c.deviation_max, c.deviation_min, c.status], [2, 2, -1, "ok"]);
  assert.ok(c.out_of_tolerance > 0.05 && c.out_of_tolerance < 0.1);
  assert.deepEqual(c.samples.map((s) => s.deviation), [0, 2, 0, 0, -1, 0]);
  assert.ok(burr.compare(golden, { step: 1 }).samples.length > 140);
  assert.equal(burr.compare(gx.points([])).status, "empty");
});

test("a moved point gives the answers of a shape that was made there", () => {
  const moved = plate();
  moved.describe();
  moved.locate([1, 1]);
  moved.movePoint(2, 50, 33.25);
  const made = gx.region([[0, 0], [40, 0], [50, 33.25], [0, 30]], { holes: [hole] });
  assert.deepEqual(moved.describe(), made.describe());
  assert.deepEqual(moved.locate([45, 31]), made.locate([45, 31]));
  assert.equal(moved.toWkt(), made.toWkt());
  const { message } = thrown(() => moved.movePoint(8, 0, 0));
  assert.match(message, /point 8 of 8/);
});

test("shapes of every kind keep their rings and are read back bit by bit", () => {
  const odd = new Float64Array([0.1, 1e-7, 1 / 3, -1e21, 123456789012345680000, 5e-324]);
  const shapes = [plate(), gx.set([[square, hole], [[[50, 0], [54, 0], [50, 3]]]]), gx.open(odd), gx.points(odd)];
  for (const shape of shapes) {
    for (const format of ["wkt", "geojson", "jsonl", "wkb"]) {
      const { shapes: [again], errors } = gx.read(shape.toText(format));
      assert.deepEqual(errors, []);
      assert.equal(again.kind, shape.kind, format);
      assert.deepEqual(again.parts(), shape.parts(), format);
    }
  }
  assert.equal(gx.region([]).measure().status, "empty");
  assert.deepEqual([plate().kind, plate().pointCount], ["region", 8]);
  assert.equal(gx.set([[square, hole], [hole]]).describe().parts, 2);
});

test("a file gives its records, and its broken ones with number and byte", () => {
  const read = gx.read("POLYGON ((0 0, 2 0, 0 2))\nPOINT (1 x)\nPOLYGON ((0 0, 4 0, 0 4))\n");
  assert.equal(read.format, "wkt");
  assert.deepEqual(read.shapes.map((s) => s.measure().area), [2, 8]);
  assert.deepEqual(read.errors.map(({ code, record, byte, message }) => ({ code, record, byte, message })), [{
    code: "bad_number", record: 2, byte: 35, message: "record 2, byte 35: number expected, found 'x'",
  }]);
  const csv = gx.read("id,x,y\na,0,0\na,3,0\na,0,3\nb,0,0\nb,1,0\nb,0,1\n");
  assert.deepEqual([csv.format, csv.shapes.map((s) => s.id).join()], ["csv", "a,b"]);
  assert.equal(gx.read(new Uint8Array([0xef, 0xbb, 0xbf, ...Buffer.from("POINT (1 2)")])).shapes.length, 1);
  assert.equal(gx.read("").shapes.length, 0);
  assert.equal(thrown(() => gx.read(new Uint8Array([0x1f, 0x8b, 8, 0]))).code, "compressed");
  assert.equal(thrown(() => gx.read("x", { format: "doc" })).code, "bad_argument");
});

test("numbers in text are read and written as the native library does", () => {
  const texts = ["1e300", "1.7976931348623157e308", "5e-324", "2.4703282292062327e-324", "0.1", "123456789012345678901234567890",
    "9007199254740993", "1e23", "8.41e21", "2.2250738585072011e-308", "0.000001", "1e-7", "-0", "4.35", "0.3"];
  for (const text of texts) {
    const [ring] = gx.read(`POINT (${text} 0)`).shapes[0].parts()[0];
    assert.ok(Object.is(ring[0], Number(text)), `${text} was read as ${ring[0]}`);
    const written = gx.points(Float64Array.of(ring[0], 0)).toWkt().match(/\((\S+) /)[1];
    assert.equal(written, Object.is(ring[0], -0) ? "-0" : String(ring[0]));
  }
  assert.equal(gx.read("POINT (1e400 0)").errors[0].code, "bad_number");
  assert.equal(gx.read("POINT (0x10 0)").errors[0].code, "bad_number");
  assert.deepEqual(Array.from(gx.read("POINT (nan -inf)").shapes[0].parts()[0][0]), [NaN, -Infinity]);
});

test("every exception of the module arrives with its word, number and text", () => {
  const errors = [0, 1, 2, 3, 4, 5, 6, 7].map((which) => thrown(() => gx.throwForTest(which)));
  assert.deepEqual(errors.map((e) => [e.code, e.number]), [
    ["empty_contour", 0x10004680], ["bad_params", errors[1].number], ["bad_pointer", 0x10000101], ["singular", 0x10000111],
    ["out_of_memory", 0], ["bad_number", 1], ["internal", 0], ["internal", 0],
  ]);
  assert.ok(errors[1].number > 0x10004680);
  assert.equal(errors[1].message, "a text, größer");
  assert.equal(errors[0].message, "empty contour");
  assert.deepEqual([errors[5].record, errors[5].byte], [7, 65]);
  assert.match(errors[5].message, /number expected/);
  assert.equal(plate().measure().area, 1100, "the module works on");
});

test("an error of the library keeps its text: a coordinate that is not finite", () => {
  const error = thrown(() => gx.region([[0, 0], [1, NaN], [2, 2]]).repair());
  assert.equal(error.code, "bad_params");
  assert.match(error.message, /finite/);
  assert.equal(gx.region([[0, 0], [1, NaN], [2, 2]]).describe().status, "not_finite");
  assert.equal(gx.region([[0, 0], [1, NaN], [2, 2]]).check().problems[0].kind, "not_finite");
});

test("wrong arguments are refused with what is wanted", () => {
  assert.match(thrown(() => bow().repair("odd")).message, /even-odd.*not 'odd'/);
  assert.equal(thrown(() => gx.region(new Float64Array(3))).code, "bad_argument");
  assert.equal(thrown(() => gx.shape("ring", [])).code, "bad_argument");
  assert.equal(thrown(() => gx.open(square).regularized()).code, "bad_argument");
});

test("a shape that was disposed of refuses, and a second time does nothing", () => {
  const shape = plate();
  shape.dispose();
  shape.dispose();
  assert.equal(thrown(() => shape.measure()).code, "disposed");
  assert.equal(thrown(() => shape.parts()).code, "disposed");
});

test("memory comes back: 30,000 shapes of 1,000 points, one after the other", () => {
  const ring = Float64Array.from({ length: 2000 }, (_, i) => Math.sin(i));
  for (let i = 0; i < 30000; ++i) gx.region(ring).dispose();
  assert.equal(plate().measure().area, 1100);
});

test("a million points make the memory grow, and shapes made before stay", () => {
  const before = plate();
  const n = 1_000_000;
  const ring = new Float64Array(2 * n);
  for (let i = 0; i < n; ++i) ring.set([Math.cos((2 * Math.PI * i) / n), Math.sin((2 * Math.PI * i) / n)], 2 * i);
  const circle = gx.region(ring);
  assert.ok(Math.abs(circle.measure().area - Math.PI) < 1e-10);
  assert.equal(circle.parts()[0][0].length, 2 * n);
  circle.dispose();
  assert.equal(before.measure().area, 1100);
});

test("the other forms of the package load, too: require, classic script", async () => {
  const cjs = createRequire(import.meta.url)(join(npm, "index.cjs"));
  assert.equal((await cjs.load()).region(square).measure().area, 1200);
  const context = vm.createContext({ TextEncoder, TextDecoder, WebAssembly, FinalizationRegistry, console, setTimeout, performance, URL, atob });
  vm.runInContext(`${readFileSync(join(npm, "gxshape.js"), "utf8")};globalThis.loaded = gxshape.load();`, context);
  const area = await vm.runInContext("loaded.then((g) => g.region([[0, 0], [40, 0], [40, 30]]).measure().area)", context);
  assert.equal(area, 600);
});

test("the package is whole: every file that its manifest names is there, and no other dependency", () => {
  const manifest = JSON.parse(readFileSync(join(npm, "package.json"), "utf8"));
  for (const file of manifest.files) assert.ok(existsSync(join(npm, file)), file);
  assert.equal(Object.keys(manifest.exports["."].import)[0], "types");
  assert.equal(manifest.dependencies, undefined);
});

test("the types say what the package does", () => {
  const folder = join(root, "build/web/consumer");
  mkdirSync(folder, { recursive: true });
  const right = `import { load, GxError, type Shape, type Description } from "../npm/index.mjs";
export async function first(): Promise<number> {
  const gx = await load();
  const shape: Shape = gx.region([[0, 0], [1, 0], [0, 1]], { holes: [] });
  const d: Description = shape.describe();
  const [x, y]: [number, number] = d.centre;
  try { shape.repair("even-odd"); } catch (e) { if (e instanceof GxError) return e.number; }
  return d.area + x + y + shape.check().problems.length;
}
`;
  writeFileSync(join(folder, "right.mts"), right);
  writeFileSync(join(folder, "wrong.mts"), right.replace('"even-odd"', '"odd"'));
  const compilerOptions = { strict: true, noEmit: true, target: "es2022", module: "nodenext", types: [], lib: ["es2022", "dom", "esnext.disposable"] };
  const compiled = (name) => {
    writeFileSync(join(folder, "tsconfig.json"), JSON.stringify({ compilerOptions, files: [name] }));
    return spawnSync(process.execPath, [join(root, "web/node_modules/typescript/bin/tsc"), "-p", folder], { encoding: "utf8" });
  };
  assert.equal(compiled("right.mts").stdout, "");
  assert.match(compiled("wrong.mts").stdout, /'"odd"' is not assignable/);
});

test("names, units and sentences are those of docs/names.csv", () => {
  const checked = spawnSync(process.execPath, [join(root, "web/make_names.mjs"), "--check"], { encoding: "utf8" });
  assert.equal(checked.stderr, "");
  for (const name of Object.keys({ ...plate().describe(), ...plate().thickness() })) {
    if (name !== "status") assert.ok(MEASURE_WORDS[name], `${name} is in no table`);
  }
});

test("holes within holes, 10,000 deep, neither crash nor hang", () => {
  const rings = Array.from({ length: 10000 }, (_, i) => {
    const s = 10001 - i;
    return [[-s, -s], [s, -s], [s, s], [-s, s]];
  });
  const shape = gx.region(rings[0], { holes: rings.slice(1) });
  assert.equal(shape.describe().holes, 9999);
  assert.equal(shape.check({ max: 5 }).valid, false);
  assert.ok(shape.repair("even-odd").shape.pointCount > 0);
});
