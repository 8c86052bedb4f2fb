// The keyboard: what the canvas does while it has the focus, and what works everywhere.
import type { App } from "./app";
import { flatIndex, pointCount, pointOf, vertexAt } from "./drawing";

const ARROWS: Record<string, [number, number]> = {
  ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1],
};

export interface KeyActions {
  help(): void;
  say(text: string): void;
}

function select(app: App, actions: KeyActions, step: number): void {
  const count = pointCount(app.drawing);
  if (count === 0) return;
  const old = app.selected === null ? (step > 0 ? -1 : 0) : flatIndex(app.drawing, app.selected);
  app.selected = vertexAt(app.drawing, (old + step + count) % count);
  const [x, y] = pointOf(app.drawing, app.selected!);
  const where = app.selected!.ring === 0 ? "outline" : `hole ${app.selected!.ring}`;
  actions.say(`vertex ${app.selected!.index + 1} of the ${where}, at ${x}, ${y}`);
  app.redraw();
}

/** Keys of the canvas.  True: the key was one. */
function canvasKey(e: KeyboardEvent, app: App, actions: KeyActions): boolean {
  const arrow = ARROWS[e.key];
  if (arrow !== undefined) {
    if (app.selected === null) select(app, actions, 1);
    else {
      const factor = e.shiftKey ? 10 : e.altKey ? 0.1 : 1;
      app.nudge(arrow[0] * factor, arrow[1] * factor);
    }
    return true;
  }
  if (e.key === "." || e.key === "PageDown") select(app, actions, 1);
  else if (e.key === "," || e.key === "PageUp") select(app, actions, -1);
  else if (e.key === "Insert") app.splitSelected();
  else if ((e.key === "Delete" || e.key === "Backspace") && app.selected !== null) app.deleteVertex(app.selected);
  else if (e.key === "Enter" && app.isDrawing) app.finishDrawing();
  else return false;
  return true;
}

function zoom(app: App, factor: number): void {
  app.view.zoom(factor, app.view.width / 2, app.view.height / 2);
  app.viewChanged();
}

/** Keys of the whole page. */
function pageKey(e: KeyboardEvent, app: App, actions: KeyActions): boolean {
  const withControl = e.ctrlKey || e.metaKey;
  const key = e.key.toLowerCase();
  if (withControl) {
    if (key === "z" && e.shiftKey) app.redo();
    else if (key === "z") app.undo();
    else if (key === "y") app.redo();
    else return false;
    return true;
  }
  if (key === "n") app.begin("outline");
  else if (key === "h") app.begin("hole");
  else if (key === "escape" && app.isDrawing) app.begin("edit");
  else if (key === "enter" && app.isDrawing) app.finishDrawing();
  else if (key === "+" || key === "=") zoom(app, 1.25);
  else if (key === "-") zoom(app, 0.8);
  else if (key === "0") app.fit();
  else if (key === "?") actions.help();
  else return false;
  return true;
}

const isTyped = (target: EventTarget | null) =>
  target instanceof HTMLElement && target.matches("input, textarea, select, dialog *");

export function listenToKeys(app: App, actions: KeyActions): void {
  document.addEventListener("keydown", (e) => {
    if (isTyped(e.target)) return;
    const isOnCanvas = e.target === app.canvas;
    // Enter on a button is the button's.
    if (e.key === "Enter" && e.target instanceof HTMLButtonElement && !isOnCanvas) return;
    if ((isOnCanvas && canvasKey(e, app, actions)) || pageKey(e, app, actions)) e.preventDefault();
  });
}
