// ---- History: undo and redo ------------------------------------------------------------------
//
// The engine records its own steps only. What the page changes between them (joined items, tidied
// markup) it does not know, and undoing one of its steps then takes text away or doubles it. So the
// page keeps the history: before each step the content as it was, with the selection.

const TYPING_PAUSE = 1500; // ms; typing after a longer pause is a step of its own
const HISTORY_STEPS = 300;
const HISTORY_NODES = 300000; // of all kept contents together
const HISTORY_STEPS_KEPT = 20; // however large the note

let past = [];
let future = [];
let stepKind = null; // of the step that may still grow: 'typing', 'deleting', or null
let stepEnd = null; // where the caret stood after its last edit, and when

function takeState() {
  const regions = [titleEl, bodyEl].map(region => region.cloneNode(true));
  const { anchorNode, anchorOffset, focusNode, focusOffset } = document.getSelection();
  return {
    regions,
    size: regions.reduce((sum, region) => sum + region.getElementsByTagName('*').length, 1),
    anchor: pathOf(anchorNode, anchorOffset),
    focus: pathOf(focusNode, focusOffset),
  };
}

// A place in the content, as the region and the child indexes that lead to it.
function pathOf(node, offset) {
  const region = node && regionOf(node);
  if (!region) return null;
  const path = [offset];
  for (let n = node; n !== region; n = n.parentNode) path.unshift([...n.parentNode.childNodes].indexOf(n));
  return { region, path };
}

function placeAt({ region, path }) {
  let node = region;
  for (const index of path.slice(0, -1)) {
    if (!node.childNodes[index]) break;
    node = node.childNodes[index];
  }
  const length = node.nodeType === Node.ELEMENT_NODE ? node.childNodes.length : node.length;
  return [node, Math.min(path[path.length - 1], length)];
}

function isAsNow(state) {
  return state.regions[0].isEqualNode(titleEl) && state.regions[1].isEqualNode(bodyEl);
}

function forgetHistory() {
  past = [];
  future = [];
  endStep();
}

function endStep() {
  stepKind = null;
  stepEnd = null;
}

// To be called before an edit. Typing and deleting letters in a row grow one step; every other kind
// of edit is a step of its own.
function beginStep(kind = null) {
  if (kind !== null && kind === stepKind && continuesStep()) return;
  past.push(takeState());
  future = [];
  stepKind = kind;
  stepEnd = null;
  let nodes = past.reduce((sum, state) => sum + state.size, 0);
  while (past.length > HISTORY_STEPS || (nodes > HISTORY_NODES && past.length > HISTORY_STEPS_KEPT)) nodes -= past.shift().size;
}

// To be called after an edit that may grow.
function markStepEnd() {
  const { anchorNode, anchorOffset } = document.getSelection();
  stepEnd = { anchorNode, anchorOffset, time: performance.now() };
}

function continuesStep() {
  const { anchorNode, anchorOffset, isCollapsed } = document.getSelection();
  return Boolean(stepEnd) && isCollapsed && stepEnd.anchorNode === anchorNode && stepEnd.anchorOffset === anchorOffset
    && performance.now() - stepEnd.time < TYPING_PAUSE;
}

// Goes one step along the history, past those that changed nothing.
function travel(from, to) {
  let state = from.pop();
  while (state && isAsNow(state)) state = from.pop();
  if (!state) return;
  to.push(takeState());
  endStep();
  titleEl.replaceChildren(contentOf(state.regions[0]));
  bodyEl.replaceChildren(contentOf(state.regions[1]));
  keepPlainItems();
  if (state.anchor && state.focus) {
    state.anchor.region.focus({ preventScroll: true });
    document.getSelection().setBaseAndExtent(...placeAt(state.anchor), ...placeAt(state.focus));
    showCaret();
  }
}

// Scrolls the line with the caret into view, when it is out of it.
function showCaret() {
  const element = elementOf(document.getSelection().focusNode);
  if (element && element !== bodyEl && bodyEl.contains(element)) element.scrollIntoView({ block: 'nearest' });
}

function undo() {
  travel(past, future);
}

function redo() {
  travel(future, past);
}

// By whatever key or menu the engine was asked for its own history.
function onHistoryInput(event) {
  if (event.inputType !== 'historyUndo' && event.inputType !== 'historyRedo') return false;
  event.preventDefault();
  runHistory(event.inputType === 'historyUndo');
  return true;
}

function onHistoryKey(event) {
  const isCommand = (event.ctrlKey || event.metaKey) && !event.altKey && !isAltGr(event);
  const key = event.key.toLowerCase();
  if (!isCommand || isComposing(event) || !(key === 'z' || (key === 'y' && !event.shiftKey))) return;
  event.preventDefault();
  runHistory(key === 'z' && !event.shiftKey);
}

function runHistory(isUndo) {
  if (isUndo) undo(); else redo();
  saveSelection();
  notifyChange();
  reportSoon(REPORT_AFTER_COMMAND);
}
