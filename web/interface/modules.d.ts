// What build.mjs puts in the place of these names: emscripten's factory, and the module's bytes.
declare module "gxshape-module" {
  const makeGxshape: unknown;
  export default makeGxshape;
}
declare module "gxshape-wasm" {
  const bytes: Uint8Array<ArrayBuffer>;
  export default bytes;
}
