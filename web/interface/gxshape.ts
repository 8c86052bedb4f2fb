// The library: what makes shapes.
import { NameLists } from "./answers";
import { Engine, type Factory } from "./engine";
import { GxError } from "./errors";
import { flatRing, FORMATS, indexOfWord, KINDS, Shape, type Kind, type RingLike, type TextFormat } from "./shape";

export type { Box, Place, Point, Status } from "./answers";
export { GxError } from "./errors";
export type { Factory } from "./engine";
export type { Description, Measure, Thickness } from "./names";
export { MEASURE_TYPES, MEASURE_WORDS } from "./names";
export * from "./shape";

/** What a file held: its records, and the errors of those that could not be read. */
export interface FileContent {
  format: string;
  shapes: Shape[];
  errors: GxError[];
}

/** The library, loaded. */
export class Gxshape {
  private readonly names: NameLists;

  constructor(private readonly engine: Engine) {
    this.names = new NameLists(engine);
  }

  /** A region of an outline and holes. */
  region(outline: RingLike, { holes = [] }: { holes?: readonly RingLike[] } = {}): Shape {
    return this.shape("region", [[outline, ...holes]]);
  }
  /** A set: of each region its rings, outline first. */
  set(regions: readonly (readonly RingLike[])[]): Shape {
    return this.shape("set", regions);
  }
  /** An open contour. */
  open(points: RingLike): Shape {
    return this.shape("open", [[points]]);
  }
  /** Points without order. */
  points(points: RingLike): Shape {
    return this.shape("points", [[points]]);
  }

  /** A shape of any kind, of parts of rings. */
  shape(kind: Kind, parts: readonly (readonly RingLike[])[]): Shape {
    const flat = parts.map((part) => part.map(flatRing)).filter((part) => part.length > 0);
    const ringEnds: number[] = [];
    const partEnds: number[] = [];
    let count = 0;
    for (const part of flat) {
      for (const ring of part) ringEnds.push((count += ring.length / 2));
      partEnds.push(ringEnds.length);
    }
    const all = new Float64Array(2 * count);
    let at = 0;
    for (const ring of flat.flat()) {
      all.set(ring, at);
      at += ring.length;
    }
    const number = indexOfWord(KINDS, kind, "kind");
    const address = this.engine.withDoubles(all, (coordinates) =>
      this.engine.withWords(ringEnds, (rings) =>
        this.engine.withWords(partEnds, (ends) =>
          this.engine.made("shape", number, coordinates, count, rings, ringEnds.length, ends, partEnds.length))));
    return new Shape(this.engine, this.names, address);
  }

  /**
   * Reads a file: WKT, WKB in hexadecimal digits, GeoJSON, JSON lines, CSV, ragged arrays, .npz, archives.  Without
   * `format` the content tells.  A broken record is an error in the list, and the others are read.
   * Throws: GxError where the content is of no format.
   */
  read(content: string | Uint8Array, { format = "" }: { format?: TextFormat | "ragged" | "npz" | "gxa" | "" } = {}): FileContent {
    const number = format === "" ? 0 : indexOfWord(FORMATS, format, "format");
    const file = this.engine.withBytes(content, (address, size) => this.engine.made("open", address, size, number));
    const result: FileContent = { format: this.engine.text(), shapes: [], errors: [] };
    try {
      for (;;) {
        const address = this.engine.invoke("next", file);
        if (address !== 0) {
          result.shapes.push(new Shape(this.engine, this.names, address));
          continue;
        }
        if (this.engine.invoke("number_count") === 0) return result;
        const error = this.engine.error();
        result.errors.push(error);
        if (error.record === 0) return result;
      }
    } finally {
      this.engine.invoke("close", file);
    }
  }

  /** For tests: throws an exception of a kind within the module. */
  throwForTest(which: number): void {
    this.engine.numbers("throw_for_test", which);
  }
}

/** Makes the library of emscripten's factory and the module's bytes. */
export async function instantiate(factory: Factory, wasmBinary: BufferSource): Promise<Gxshape> {
  return new Gxshape(new Engine(await factory({ wasmBinary })));
}
