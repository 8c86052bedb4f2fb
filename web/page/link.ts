// The drawing in the address: #v=1&y=down&s=TEXT.  The text is base64url of what deflate makes of
//
//     x,y x,y x,y;x,y ...    points of a ring, `;` the next ring, `/` the next part, `o:` an open line,
//     g: ...                 behind a `|`: the golden outline
//
// with the fewest digits that read back as the same doubles, so the link gives the drawing bit by bit (−0 as 0).
import type { Drawing } from "./drawing";

export interface Linked {
  drawing: Drawing;
  golden: Drawing | null;
  yUp: boolean;
}

/** What an address may hold; above it a file is offered instead. */
export const LONGEST_LINK = 8000;
/** What is unpacked at all; few characters may stand for very many. */
const LONGEST_READ = 100_000;

const PREFIXES: Partial<Record<Drawing["kind"], string>> = { open: "o:", points: "p:" };

export function textOf(drawing: Drawing): string {
  const ringText = (ring: Float64Array) => {
    const pairs: string[] = [];
    for (let i = 0; i < ring.length; i += 2) pairs.push(`${ring[i]},${ring[i + 1]}`);
    return pairs.join(" ");
  };
  return (PREFIXES[drawing.kind] ?? "") + drawing.parts.map((rings) => rings.map(ringText).join(";")).join("/");
}

export function drawingFrom(text: string): Drawing {
  const kind = text.startsWith("o:") ? "open" : text.startsWith("p:") ? "points" : null;
  const body = kind === null ? text : text.slice(2);
  if (body === "") return { kind: kind ?? "region", parts: [], id: "" };
  const parts = body.split("/").map((part) => part.split(";").map(ringFrom));
  return { kind: kind ?? (parts.length > 1 ? "set" : "region"), parts, id: "" };
}

function ringFrom(text: string): Float64Array {
  const numbers = text.split(/[ ,]/).map((word) => {
    const value = Number(word);
    if (word === "" || !Number.isFinite(value)) throw new Error(`'${word}' is no coordinate`);
    return value;
  });
  if (numbers.length % 2 !== 0) throw new Error("a coordinate is missing");
  return Float64Array.from(numbers);
}

async function through(bytes: Uint8Array, transform: GenericTransformStream): Promise<Uint8Array> {
  const stream = new Blob([bytes as Uint8Array<ArrayBuffer>]).stream().pipeThrough(transform as ReadableWritablePair<Uint8Array, Uint8Array>);
  return new Uint8Array(await new Response(stream).arrayBuffer());
}

function base64url(bytes: Uint8Array): string {
  let binary = "";
  for (const byte of bytes) binary += String.fromCharCode(byte);
  return btoa(binary).replaceAll("+", "-").replaceAll("/", "_").replace(/=+$/, "");
}

function bytesFrom(text: string): Uint8Array {
  const binary = atob(text.replaceAll("-", "+").replaceAll("_", "/"));
  return Uint8Array.from(binary, (c) => c.charCodeAt(0));
}

/** The part of the address behind `#`. */
export async function linkOf({ drawing, golden, yUp }: Linked): Promise<string> {
  const text = textOf(drawing) + (golden === null ? "" : `|g:${textOf(golden)}`);
  const packed = await through(new TextEncoder().encode(text), new CompressionStream("deflate-raw"));
  return `v=1&y=${yUp ? "up" : "down"}&s=${base64url(packed)}`;
}

/** The drawing of an address; null where it holds none.  Throws: Error that says what is wrong with it. */
export async function linkedFrom(fragment: string): Promise<Linked | null> {
  const fields = new URLSearchParams(fragment.replace(/^#/, ""));
  const version = fields.get("v");
  if (version === null) return null;
  if (version !== "1") throw new Error(`the link is of version '${version}', which this page does not know`);
  if (fragment.length > LONGEST_READ) throw new Error("the link is too long to be one of this page");
  let text: string;
  try {
    const bytes = bytesFrom(fields.get("s") ?? "");
    text = new TextDecoder("utf-8", { fatal: true }).decode(await through(bytes, new DecompressionStream("deflate-raw")));
  } catch {
    throw new Error("the link is broken: some of its characters are missing or changed");
  }
  const [drawing, golden] = text.split("|g:");
  return {
    drawing: drawingFrom(drawing!),
    golden: golden === undefined ? null : drawingFrom(golden),
    yUp: fields.get("y") === "up",
  };
}
