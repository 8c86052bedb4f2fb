// What stands in the page's second script and, word for word, in the worker: the library with the module inside.
import makeGxshape from "gxshape-module";
import wasm from "gxshape-wasm";
import { instantiate, type Factory, type Gxshape } from "../interface/gxshape";
import { serve } from "./slow";

export function load(): Promise<Gxshape> {
  return instantiate(makeGxshape as Factory, wasm);
}

export function serveHere(): void {
  serve(load);
}

Object.assign(globalThis, { gxshapeEngine: { load, serve: serveHere } });
