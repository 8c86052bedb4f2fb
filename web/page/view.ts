// From coordinates to pixels of the canvas, and back.  y runs down as in a picture, or up as on a map.
export class View {
  scale = 1;
  /** The coordinates in the middle of the canvas. */
  centre: [number, number] = [0, 0];
  width = 1;
  height = 1;
  yUp = false;

  toScreen(x: number, y: number): [number, number] {
    return [this.width / 2 + (x - this.centre[0]) * this.scale, this.height / 2 + (y - this.centre[1]) * this.sy];
  }
  toWorld(px: number, py: number): [number, number] {
    return [this.centre[0] + (px - this.width / 2) / this.scale, this.centre[1] + (py - this.height / 2) / this.sy];
  }
  /** Pixels for a unit downwards. */
  get sy(): number {
    return this.yUp ? -this.scale : this.scale;
  }

  /** Shows the box with a margin. */
  fit(box: readonly [number, number, number, number] | null): void {
    if (box === null) {
      this.centre = [200, 150];
      this.scale = Math.min(this.width / 440, this.height / 340);
      return;
    }
    this.centre = [(box[0] + box[2]) / 2, (box[1] + box[3]) / 2];
    const [w, h] = [box[2] - box[0], box[3] - box[1]];
    const margin = Math.min(56, this.width / 8, this.height / 8);
    const scale = Math.min((this.width - 2 * margin) / w, (this.height - 2 * margin) / h);
    this.scale = Number.isFinite(scale) && scale > 0 ? scale : 1;
  }

  /** Zooms so that the point under these pixels stays there. */
  zoom(factor: number, px: number, py: number): void {
    const [x, y] = this.toWorld(px, py);
    this.scale = Math.min(1e12, Math.max(1e-12, this.scale * factor));
    const [nx, ny] = this.toWorld(px, py);
    this.centre = [this.centre[0] + x - nx, this.centre[1] + y - ny];
  }
  pan(dx: number, dy: number): void {
    this.centre = [this.centre[0] - dx / this.scale, this.centre[1] - dy / this.sy];
  }

  /** A coordinate rounded to what a pixel can tell, so that drawn numbers stay short. */
  rounded(value: number): number {
    const step = 10 ** Math.floor(Math.log10(0.5 / this.scale));
    const rounded = Math.round(value / step) * step;
    return Number.parseFloat(rounded.toPrecision(12));
  }

  /** How far an arrow key moves a vertex: a power of ten, of about a pixel. */
  get keyStep(): number {
    return 10 ** Math.round(Math.log10(1 / this.scale));
  }
}
