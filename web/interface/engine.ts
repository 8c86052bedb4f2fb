// The module as JavaScript sees it: functions of C, memory, and the answer of the last call.  Nothing else in
// this package knows addresses.
//
//   1. A call returns 0 (or the address of what it made); after an exception -1 (or 0), and the answer tells of it.
//   2. Views of memory are asked for anew at every use: when memory grows, the old ones are dead.
//   3. A trap (memory out of bounds, a stack that is too deep) leaves the module in an unknown state.  It is an
//      error with the word `internal`, and from then on every call is refused with the same.
import { GxError, errorOf } from "./errors";

/** What emscripten's factory makes. */
export interface RawModule {
  HEAPU8: Uint8Array;
  HEAPU32: Uint32Array;
  HEAPF64: Float64Array;
  _malloc(size: number): number;
  _free(address: number): void;
  [name: `_gxweb_${string}`]: (...values: number[]) => number;
}
export type Factory = (settings: { wasmBinary: BufferSource }) => Promise<RawModule>;

const encoder = new TextEncoder();
const decoder = new TextDecoder();

export class Engine {
  readonly raw: RawModule;
  private broken: GxError | null = null;

  constructor(raw: RawModule) {
    this.raw = raw;
  }

  /** Calls a function as it is, without looking at what it returns. */
  invoke(name: string, ...values: number[]): number {
    if (this.broken !== null) throw this.broken;
    try {
      return this.raw[`_gxweb_${name}`]!(...values);
    } catch (cause) {
      this.broken = new GxError("internal", `${name}: ${String(cause)}; the module has to be loaded anew`);
      throw this.broken;
    }
  }

  /** Calls a function that answers with numbers, which are copied. */
  numbers(name: string, ...values: number[]): Float64Array {
    if (this.invoke(name, ...values) !== 0) throw this.error();
    return this.answer();
  }

  /** Calls a function that makes a shape, and returns its address. */
  made(name: string, ...values: number[]): number {
    const address = this.invoke(name, ...values);
    if (address === 0) throw this.error();
    return address;
  }

  answer(): Float64Array {
    const count = this.invoke("number_count");
    return this.doubles(this.invoke("numbers"), count);
  }

  text(): string {
    const size = this.invoke("text_size");
    const address = this.invoke("text");
    return decoder.decode(this.raw.HEAPU8.slice(address, address + size));
  }

  error(): GxError {
    return errorOf(this.text(), this.answer());
  }

  /** A copy of doubles in memory. */
  doubles(address: number, count: number): Float64Array {
    return this.raw.HEAPF64.slice(address / 8, address / 8 + count);
  }

  /** Puts doubles into memory for the time of one call. */
  withDoubles<T>(values: ArrayLike<number>, use: (address: number) => T): T {
    return this.withMemory(values.length * 8, (address) => {
      this.raw.HEAPF64.set(values, address / 8);
      return use(address);
    });
  }

  withWords<T>(values: readonly number[], use: (address: number) => T): T {
    return this.withMemory(values.length * 4, (address) => {
      this.raw.HEAPU32.set(values, address / 4);
      return use(address);
    });
  }

  /** Puts text, as UTF-8, or bytes into memory for the time of one call. */
  withBytes<T>(content: string | Uint8Array, use: (address: number, size: number) => T): T {
    const bytes = typeof content === "string" ? encoder.encode(content) : content;
    return this.withMemory(bytes.length, (address) => {
      this.raw.HEAPU8.set(bytes, address);
      return use(address, bytes.length);
    });
  }

  private withMemory<T>(size: number, use: (address: number) => T): T {
    if (this.broken !== null) throw this.broken;
    const address = this.raw._malloc(Math.max(size, 8));
    if (address === 0) throw new GxError("out_of_memory", `no memory for ${size} bytes`);
    try {
      return use(address);
    } finally {
      this.raw._free(address);
    }
  }
}
