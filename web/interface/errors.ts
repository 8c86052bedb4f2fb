// Errors of the library as errors of JavaScript: its text, its number, and a word that never changes.

/** An error of the library, or of this interface. */
export class GxError extends Error {
  /** The word: `empty_contour`, `bad_number`, `bad_argument`, `out_of_memory`, `internal` ... */
  readonly code: string;
  /** The number of the library's class, as C++ `errorNumber()` and Python `.number` have it; else 0. */
  readonly number: number;
  /** Of a file: the number of the record from 1, and where in the file it was noticed; else 0. */
  readonly record: number;
  readonly byte: number;

  constructor(code: string, message: string, number = 0, record = 0, byte = 0) {
    super(message === "" ? code.replaceAll("_", " ") : message);
    this.name = "GxError";
    this.code = code;
    this.number = number;
    this.record = record;
    this.byte = byte;
  }
}

const WORDS = new Map([
  ["std::bad_alloc", "out_of_memory"],
  ["std::exception", "internal"],
  ["unknown", "internal"],
]);

/** `gxContourDefs::EmptyContour` is `empty_contour`, `gxReadError::bad_number` `bad_number`. */
export function codeOf(className: string): string {
  const known = WORDS.get(className);
  if (known !== undefined) return known;
  const last = className.split("::").pop() ?? className;
  return last
    .replace(/^gx/, "")
    .replace(/([a-z0-9])([A-Z])/g, "$1_$2")
    .toLowerCase();
}

/** What the module tells of an exception: a line with the class and then the text; number, record, byte. */
export function errorOf(text: string, numbers: ArrayLike<number>): GxError {
  const end = text.indexOf("\n");
  return new GxError(codeOf(text.slice(0, end)), text.slice(end + 1), numbers[0], numbers[1], numbers[2]);
}
