// ---- Caret and selection ---------------------------------------------------------------------

function currentRange() {
  const selection = document.getSelection();
  return selection && selection.rangeCount ? selection.getRangeAt(0) : null;
}

function regionOf(node) {
  if (titleEl.contains(node)) return titleEl;
  if (bodyEl.contains(node)) return bodyEl;
  return null;
}

function saveSelection() {
  const range = currentRange();
  const region = range && regionOf(document.getSelection().anchorNode);
  if (!region) return;
  savedRange = range.cloneRange();
  savedEl = region;
}

function editableOf(element) {
  const editable = element && element.closest('[contenteditable="true"]');
  return editable && editable.isConnected ? editable : bodyEl;
}

let isMovingFocus = false; // the page does it itself

function moveFocus(region, options) {
  isMovingFocus = true;
  region.focus(options);
  isMovingFocus = false;
}

function select(range) {
  const selection = document.getSelection();
  selection.removeAllRanges();
  selection.addRange(range);
}

function placeCaret(element, fill) {
  moveFocus(editableOf(element));
  const range = document.createRange();
  fill(range);
  select(range);
  savedRange = range.cloneRange();
  savedEl = element;
}

// The end of an item is the end of its own line; a nested list comes after it.
function placeCaretAtLineEnd(item) {
  const nested = nestedListOf(item);
  if (!nested) placeCaretAtEnd(item); else placeCaretAt(item, [...item.childNodes].indexOf(nested));
}

function placeCaretAfterBox(item) {
  const box = boxOf(item);
  placeCaretAt(item, box ? [...item.childNodes].indexOf(box) + 1 : 0);
}

function placeCaretAtStart(element) {
  placeCaret(element, range => {
    range.setStart(element, 0);
    range.collapse(true);
  });
}

function placeCaretAtEnd(element) {
  placeCaret(element, range => {
    range.selectNodeContents(element);
    range.collapse(false);
  });
}

// The end of the text, in its last line rather than behind it: this engine reports a caret just as
// it was placed, and the line's format is read off it.
function placeCaretAtTextEnd() {
  let line = bodyEl;
  const holdsText = node => node && node.nodeType === Node.ELEMENT_NODE && !['BR', 'HR', 'IMG'].includes(node.nodeName) && node.isContentEditable;
  while (holdsText(line.lastChild)) line = line.lastChild;
  const last = line.lastChild;
  if (last && last.nodeType === Node.TEXT_NODE) {
    placeCaretAt(last, last.length);
  } else if (last && last.nodeName === 'BR' && line !== bodyEl) {
    placeCaretAt(line, line.childNodes.length - 1);
  } else {
    placeCaretAtEnd(line);
  }
  savedEl = bodyEl;
}

function placeCaretAt(node, offset) {
  placeCaret(elementOf(node), range => {
    range.setStart(node, offset);
    range.collapse(true);
  });
}

function focusContentEditable(element) {
  setTimeout(() => placeCaretAtEnd(element), 0);
}

// At once, so that a key pressed right now is not typed elsewhere; and once more when the engine
// has finished with the event that brought us here, unless the caret has stayed.
function focusItem(item) {
  placeCaretAtLineEnd(item);
  setTimeout(() => {
    if (item.isConnected && !item.contains(document.getSelection().anchorNode)) placeCaretAtLineEnd(item);
  }, 0);
}

function placeCaretAtEndPersistent(element, attempts = CARET_ATTEMPTS) {
  placeCaretAtEnd(element);
  if (attempts > 1 && !element.contains(document.getSelection().anchorNode)) {
    setTimeout(() => placeCaretAtEndPersistent(element, attempts - 1), CARET_RETRY);
  }
}

function dropStaleRange() {
  if (savedRange && !savedRange.startContainer.isConnected) {
    savedRange = null;
    savedEl = bodyEl;
  }
}

function restoreSelection() {
  dropStaleRange();
  moveFocus(editableOf(savedEl), { preventScroll: true }); // whoever comes back finds the text as it was left
  if (!savedRange) {
    focusContentEditable(savedEl);
    return;
  }
  const now = currentRange();
  // Selected anew, the place would lose the format that was switched on for what is typed next.
  if (now && now.compareBoundaryPoints(Range.START_TO_START, savedRange) === 0 && now.compareBoundaryPoints(Range.END_TO_END, savedRange) === 0) return;
  try {
    select(savedRange);
  } catch (error) {
    savedRange = null;
    focusContentEditable(bodyEl);
  }
}

// Runs a change of the tree that moves nodes about and leaves the selection where it was in them.
function keepingSelection(change) {
  const { anchorNode, anchorOffset, focusNode, focusOffset } = document.getSelection();
  const anchor = anchorNode && holdPlace(anchorNode, anchorOffset);
  const focus = anchorNode && holdPlace(focusNode, focusOffset);
  change();
  if (anchor && anchor.node.isConnected && focus.node.isConnected) {
    document.getSelection().setBaseAndExtent(...releasePlace(anchor), ...releasePlace(focus));
  }
}

// A place as the text, or as the neighbour that goes with it wherever it is moved.
function holdPlace(node, offset) {
  if (node.nodeType !== Node.ELEMENT_NODE) return { node, offset };
  if (node.childNodes[offset]) return { node: node.childNodes[offset], side: 0 };
  return node.lastChild ? { node: node.lastChild, side: 1 } : { node, offset: 0 };
}

function releasePlace({ node, offset, side }) {
  if (side !== undefined) return [node.parentNode, [...node.parentNode.childNodes].indexOf(node) + side];
  return [node, Math.min(offset, node.nodeType === Node.ELEMENT_NODE ? node.childNodes.length : node.length)];
}

// A triple click selects a line up to the start of the next one, which typing would draw up.
function leaveNextLineOut() {
  const range = currentRange();
  const next = range && !range.collapsed && elementOf(range.endContainer).closest(LINES);
  if (!next || !bodyEl.contains(next) || next.contains(range.startContainer) || !endsAtStartOf(next, range)) return;
  const selection = document.getSelection();
  if (selection.focusNode === range.endContainer && selection.focusOffset === range.endOffset) selection.modify('extend', 'backward', 'character');
}

// A caret between the blocks, where the engine would make a line as it sees fit, goes into the line
// that follows, or ends the one before. One in front of an item's box goes behind it.
function settleCaret() {
  const range = currentRange();
  if (!range || !range.collapsed || !bodyEl.contains(range.startContainer)) return;
  const holder = elementOf(range.startContainer);
  if (holder.matches('.chk') || (holder === range.startContainer && boxOf(holder) && range.startOffset === 0)) {
    placeCaretAfterBox(holder.closest('li'));
    return;
  }
  if (holder !== range.startContainer || !holder.matches('#body, ul, ol')) return;
  const line = node => node && node.nodeType === Node.ELEMENT_NODE
    && (node.matches(LINES) ? node : node.matches('ul, ol') && node.querySelector('li'));
  const next = line(range.startContainer.childNodes[range.startOffset]);
  const last = line(range.startContainer.childNodes[range.startOffset - 1]);
  if (next) {
    placeCaretAfterBox(next);
  } else if (last) {
    const items = last.parentElement.querySelectorAll('li');
    placeCaretAtLineEnd(last.matches('li') ? items[items.length - 1] : last);
  }
}
