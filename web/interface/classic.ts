// The package as a classic script with the module inside: works from file:// and defines `gxshape`.
import makeGxshape from "gxshape-module";
import wasm from "gxshape-wasm";
import { instantiate, type Factory, type Gxshape } from "./gxshape";

export * from "./gxshape";

export function load(): Promise<Gxshape> {
  return instantiate(makeGxshape as Factory, wasm);
}
