// Undo and redo: a list of states and a place in it.
export class History<State> {
  private states: State[];
  private at = 0;

  constructor(first: State, private readonly atMost = 200) {
    this.states = [first];
  }

  get now(): State {
    return this.states[this.at]!;
  }
  get canUndo(): boolean {
    return this.at > 0;
  }
  get canRedo(): boolean {
    return this.at + 1 < this.states.length;
  }

  /** A change: what was undone is gone. */
  push(state: State): void {
    this.states = [...this.states.slice(0, this.at + 1), state].slice(-(this.atMost + 1));
    this.at = this.states.length - 1;
  }
  undo(): boolean {
    if (!this.canUndo) return false;
    --this.at;
    return true;
  }
  redo(): boolean {
    if (!this.canRedo) return false;
    ++this.at;
    return true;
  }
}
