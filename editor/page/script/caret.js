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

function select(range) {
  const selection = document.getSelection();
  selection.removeAllRanges();
  selection.addRange(range);
}

function placeCaret(element, fill) {
  editableOf(element).focus();
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
  editableOf(savedEl).focus();
  if (!savedRange) {
    focusContentEditable(savedEl);
    return;
  }
  try {
    select(savedRange);
  } catch (error) {
    savedRange = null;
    focusContentEditable(bodyEl);
  }
}

// Runs a change that keeps the text and may take the caret to another place in it, or out of it.
function keepingCaretInText(change) {
  const { anchorNode, anchorOffset, focusNode, isCollapsed } = document.getSelection();
  const isText = node => Boolean(node) && node.nodeType === Node.TEXT_NODE && bodyEl.contains(node);
  if (!isText(anchorNode) || !isText(focusNode) || anchorOffset === 0) {
    change();
  } else if (!isCollapsed) {
    keepingSelection(change);
  } else {
    let length = textBefore(anchorNode) + anchorOffset;
    change();
    const texts = document.createTreeWalker(bodyEl, NodeFilter.SHOW_TEXT);
    while (texts.nextNode() && length > texts.currentNode.length) length -= texts.currentNode.length;
    if (isText(texts.currentNode)) document.getSelection().collapse(texts.currentNode, length);
  }
}

function textBefore(node) {
  const texts = document.createTreeWalker(bodyEl, NodeFilter.SHOW_TEXT);
  let length = 0;
  while (texts.nextNode() && texts.currentNode !== node) length += texts.currentNode.length;
  return length;
}

// Runs a change of the tree that moves nodes about and leaves the selection where it was.
function keepingSelection(change) {
  const selection = document.getSelection();
  const { anchorNode, anchorOffset, focusNode, focusOffset } = selection;
  change();
  if (!anchorNode || !anchorNode.isConnected || !focusNode.isConnected) return;
  const length = node => (node.nodeType === Node.ELEMENT_NODE ? node.childNodes.length : node.length);
  selection.setBaseAndExtent(anchorNode, Math.min(anchorOffset, length(anchorNode)),
    focusNode, Math.min(focusOffset, length(focusNode)));
}
