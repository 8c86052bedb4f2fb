// Writes interface/names.ts from docs/names.csv: names, types, units and sentences of all measures.  With --check
// it says whether the file is what it would write.
import { readFileSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

const here = dirname(fileURLToPath(import.meta.url));

/** A line of CSV as fields; quotes may hold commas and doubled quotes. */
function fieldsOf(line) {
  return [...line.matchAll(/("(?:[^"]|"")*"|[^,]*)(?:,|$)/g)]
    .map((match) => match[1])
    .slice(0, 6)
    .map((field) => (field.startsWith('"') ? field.slice(1, -1).replaceAll('""', '"') : field));
}

const TYPES = { number: "number", int: "number", point: "Point", box: "Box", place: "Place | null" };

const SLOW = " (named or with --all)";
const sayingOf = (m) => m.sentence.replace(SLOW, "");

export function namesText(csv) {
  const rows = csv.trim().split("\n").slice(1).map(fieldsOf).filter((row) => row[0] === "measure");
  const measures = rows.map(([, name, unit, type, commands, sentence]) => ({ name, unit, type, commands, sentence }));
  const block = (title, names, says) =>
    `/** ${says} */\nexport interface ${title} {\n${names
      .map((m) => `  /** ${sayingOf(m)}${m.unit === "" || m.unit === "1" ? "" : ` [${m.unit}]`} */\n  ${m.name}: ${TYPES[m.type]};`)
      .join("\n")}\n  status: Status;\n}\n`;
  const typed = measures.filter((m) => m.type in TYPES);
  const of = (command) => typed.filter((m) => m.commands.split(" ").includes(command));
  const isSlow = (m) => m.sentence.endsWith(SLOW);
  return [
    "// Written by web/make_names.mjs from docs/names.csv.",
    'import type { Box, Place, Point, Status } from "./answers";\n',
    block("Measure", of("measure"), "Area, length, centre and box."),
    block("Description", of("describe").filter((m) => !isSlow(m)), "All measures of a shape that take little time."),
    block("Thickness", of("describe").filter(isSlow), "The largest circle within, and the smallest wall."),
    "/** What kind of value each name has; `number` where none is told. */",
    "export const MEASURE_TYPES: Record<string, string> = {",
    ...typed.filter((m) => ["point", "box", "place"].includes(m.type)).map((m) => `  ${m.name}: "${m.type}",`),
    "};\n",
    "/** Unit and sentence of each name, in the order of the tool. */",
    "export const MEASURE_WORDS: Record<string, readonly [unit: string, sentence: string]> = {",
    ...typed.map((m) => `  ${m.name}: [${JSON.stringify(m.unit)}, ${JSON.stringify(sayingOf(m))}],`),
    "};",
    "",
  ].join("\n");
}

if (process.argv[1] === fileURLToPath(import.meta.url)) {
  const text = namesText(readFileSync(join(here, "../docs/names.csv"), "utf8"));
  const path = join(here, "interface/names.ts");
  if (!process.argv.includes("--check")) {
    writeFileSync(path, text);
  } else if (readFileSync(path, "utf8") !== text) {
    console.error("web/interface/names.ts is not what docs/names.csv says: node web/make_names.mjs");
    process.exitCode = 1;
  }
}
