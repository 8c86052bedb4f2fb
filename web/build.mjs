// Makes, of build/web/bin/gxshape.{js,wasm}:
//
//   build/web/npm/           the npm package: index.mjs, index.cjs, gxshape.js (classic, module inside), gxshape.wasm, types
//   build/web/page/index.html   the page: one file, everything inside
//
// Usage: node web/build.mjs   (tools/build_page does all of it)
import { spawnSync } from "node:child_process";
import { copyFileSync, existsSync, mkdirSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { brotliCompressSync, gzipSync } from "node:zlib";
import { build } from "esbuild";

const here = dirname(fileURLToPath(import.meta.url));
const root = dirname(here);
const made = join(root, "build/web");
const npm = join(made, "npm");
const wasmFile = join(made, "bin/gxshape.wasm");
const licence = "gxshape, Apache-2.0";

/** The names that stand for emscripten's factory and the module's bytes. */
const module = {
  name: "module",
  setup(setup) {
    setup.onResolve({ filter: /^gxshape-module$/ }, () => ({ path: join(made, "bin/gxshape.js") }));
    setup.onResolve({ filter: /^gxshape-wasm$/ }, () => ({ path: wasmFile }));
  },
};

const settings = {
  bundle: true, minify: true, target: "es2022", charset: "utf8", logLevel: "warning",
  loader: { ".wasm": "binary" }, plugins: [module], banner: { js: `/* ${licence} */` },
};

async function bundled(entry, more) {
  const result = await build({ ...settings, entryPoints: [join(here, entry)], write: false, ...more });
  return result.outputFiles[0].text;
}

function types() {
  const tsc = join(here, "node_modules/.bin/tsc");
  const run = (...options) => {
    const done = spawnSync(tsc, ["-p", here, ...options], { stdio: "inherit" });
    if (done.status !== 0) throw new Error("the types do not fit");
  };
  run();
  rmSync(join(npm, "types"), { recursive: true, force: true });
  run("--noEmit", "false", "--emitDeclarationOnly", "--declaration", "--outDir", join(made, "types"));
}

/** The declarations as one file: imports between them are not needed any more. */
function declarations() {
  const order = ["errors", "answers", "names", "engine", "shape", "gxshape"];
  const texts = order.map((name) => readFileSync(join(made, "types/interface", `${name}.d.ts`), "utf8"));
  const joined = texts.join("\n").replace(/^import .*;$/gm, "").replace(/^export (type )?(\{.*\}|\*) from .*;$/gm, "");
  return `// Types of gxshape; the names of measures are those of docs/names.csv.\n${joined.replace(/^export \{\};$/gm, "")}
/** Loads the library; \`wasm\` are the module's bytes where they are not to be read from beside this file. */
export declare function load(options?: { wasm?: BufferSource }): Promise<Gxshape>;
`;
}

async function makePackage() {
  mkdirSync(npm, { recursive: true });
  writeFileSync(join(npm, "index.mjs"), await bundled("interface/index.ts", { format: "esm", external: ["node:*"] }));
  writeFileSync(join(npm, "index.cjs"), await bundled("interface/index.ts", {
    format: "cjs", external: ["node:*"],
    define: { "import.meta.url": "gxshapeFile" },
    banner: { js: `/* ${licence} */const gxshapeFile = require("node:url").pathToFileURL(__filename).href;` },
  }));
  writeFileSync(join(npm, "gxshape.js"), await bundled("interface/classic.ts", { format: "iife", globalName: "gxshape" }));
  writeFileSync(join(npm, "index.d.ts"), declarations());
  writeFileSync(join(npm, "index.d.mts"), declarations());
  writeFileSync(join(npm, "index.d.cts"), declarations());
  copyFileSync(wasmFile, join(npm, "gxshape.wasm"));
  copyFileSync(join(root, "LICENSE"), join(npm, "LICENSE"));
  copyFileSync(join(here, "README.md"), join(npm, "README.md"));
  const own = JSON.parse(readFileSync(join(here, "package.json"), "utf8"));
  const manifest = {
    name: own.name, version: own.version, description: own.description, license: "Apache-2.0", type: "module",
    exports: {
      ".": {
        import: { types: "./index.d.ts", default: "./index.mjs" },
        require: { types: "./index.d.cts", default: "./index.cjs" },
      },
      "./gxshape.js": "./gxshape.js", "./gxshape.wasm": "./gxshape.wasm",
    },
    main: "./index.cjs", types: "./index.d.ts", sideEffects: false, engines: { node: ">=18" },
    files: ["index.mjs", "index.cjs", "index.d.ts", "index.d.mts", "index.d.cts", "gxshape.js", "gxshape.wasm", "LICENSE", "README.md"],
  };
  writeFileSync(join(npm, "package.json"), `${JSON.stringify(manifest, null, 2)}\n`);
}

// Files of examples/data that the page takes along: all coins and countries, of the tangled ones the first small ones.
function sampleFiles() {
  const lines = (name) => readFileSync(join(root, "examples/data", name), "utf8").trim().split("\n");
  const named = (all) => all.map((line) => {
    const { name, id, ...rest } = JSON.parse(line);
    return JSON.stringify({ id: name ?? id, ...rest });
  }).join("\n");
  return {
    coins: named(lines("coins/outlines.jsonl")),
    countries: named(lines("countries/countries.jsonl")),
    tangled: named(lines("tangled/tangled.jsonl").filter((line) => line.length < 3000).slice(0, 12)),
  };
}

/** Text that may stand in a script element. */
const inScript = (text) => text.replaceAll("</script", "<\\/script").replaceAll("<!--", "<\\!--");

async function makePage() {
  const folder = join(made, "page");
  mkdirSync(folder, { recursive: true });
  const pieces = {
    "page.css": readFileSync(join(here, "page/page.css"), "utf8"),
    "page.js": inScript(await bundled("page/main.ts", { format: "iife" })),
    "samples": inScript(`globalThis.gxshapeSamples = ${JSON.stringify(sampleFiles())};`),
    "engine.js": inScript(await bundled("page/engine.ts", { format: "iife" })),
  };
  const page = readFileSync(join(here, "page/index.html"), "utf8").replace(/\/\*([a-z.]+)\*\//g, (_, name) => pieces[name]);
  writeFileSync(join(folder, "index.html"), page);
  const engine = pieces["engine.js"].length;
  return { page, rest: Buffer.from(page.replace(pieces["engine.js"], "")), engine };
}

const kib = (bytes) => `${(bytes / 1024).toFixed(1)} KiB`;
const sizes = (name, bytes) =>
  console.log(`${name.padEnd(28)} ${kib(bytes.length).padStart(10)}, gzip ${kib(gzipSync(bytes, { level: 9 }).length)}, brotli ${kib(brotliCompressSync(bytes).length)}`);

if (!existsSync(wasmFile)) {
  console.error("there is no module: tools/build web gxshape_web");
  process.exit(1);
}
types();
await makePackage();
const { page, rest } = await makePage();
sizes("gxshape.wasm", readFileSync(wasmFile));
sizes("gxshape.js (module inside)", readFileSync(join(npm, "gxshape.js")));
sizes("index.mjs", readFileSync(join(npm, "index.mjs")));
sizes("page without the module", rest);
sizes("page, whole", Buffer.from(page));
