// The package for modules and for Node: `gxshape.wasm` lies beside it.
import makeGxshape from "gxshape-module";
import { instantiate, type Factory, type Gxshape } from "./gxshape";

export * from "./gxshape";

/** Loads the library; `wasm` are the module's bytes where they are not to be read from beside this file. */
export async function load({ wasm }: { wasm?: BufferSource } = {}): Promise<Gxshape> {
  return instantiate(makeGxshape as Factory, wasm ?? (await bytesBeside()));
}

async function bytesBeside(): Promise<BufferSource> {
  const address = new URL("./gxshape.wasm", import.meta.url);
  if (address.protocol === "file:" && typeof process === "object") {
    const { readFile } = await import("node:fs/promises");
    return readFile(address) as Promise<Buffer<ArrayBuffer>>;
  }
  const answer = await fetch(address);
  if (!answer.ok) throw new Error(`${address}: ${answer.status} ${answer.statusText}`);
  return answer.arrayBuffer();
}
