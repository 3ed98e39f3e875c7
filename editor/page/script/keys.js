// ---- Keys ------------------------------------------------------------------------------------

const FORMAT_KEYS = { KeyB: 'bold', KeyI: 'italic', KeyU: 'underline' };

function isComposing(event) {
  return event.isComposing || event.keyCode === 229;
}

function isAltGr(event) {
  return event.getModifierState('AltGraph');
}

function onTitleKey(event) {
  if (isComposing(event) || event.key !== 'Enter') return;
  if (event.metaKey || event.ctrlKey || event.altKey || event.shiftKey) return;
  event.preventDefault();
  placeCaretAtStart(bodyEl);
  notifyChange();
}

// One list of cases, first match wins.
function onBodyKey(event) {
  if (isComposing(event)) return;
  const anchor = document.getSelection().anchorNode;
  if (event.key === 'Tab') {
    const block = blockAt(anchor, LIST_BLOCKS);
    if (block && block.tagName === 'LI') onTabInItem(event);
    return;
  }
  if (event.altKey && !event.metaKey && !event.ctrlKey && !isAltGr(event) && FORMAT_KEYS[event.code]) {
    event.preventDefault();
    document.execCommand(FORMAT_KEYS[event.code]);
    finishEdit();
    return;
  }
  if (event.key !== 'Enter' || event.metaKey || event.ctrlKey || event.altKey) return;
  const block = blockAt(anchor, LINE_BLOCKS);
  if (isChecklistItem(block)) {
    event.preventDefault();
    if (event.shiftKey) leaveChecklist(block); else splitItem(block);
    finishEdit();
  } else if (event.shiftKey) {
    event.preventDefault();
    insertLineBreak();
    finishEdit();
  } else if (block && ['H1', 'H2', 'H3'].includes(block.tagName)) {
    event.preventDefault();
    document.execCommand('insertParagraph');
    document.execCommand('formatBlock', false, 'p');
    finishEdit();
  }
}

function finishEdit() {
  tidyBody();
  saveSelection();
  notifyChange();
}

function onTabInItem(event) {
  event.preventDefault();
  document.execCommand(event.shiftKey ? 'outdent' : 'indent');
  finishEdit();
  reportSoon(REPORT_AFTER_COMMAND);
}

function insertLineBreak() {
  document.execCommand('insertLineBreak');
  const block = blockAt(document.getSelection().anchorNode, LINE_BLOCKS);
  if (!block) return;
  const last = block.lastChild;
  const isBreak = node => node && node.nodeName === 'BR';
  if (isBreak(last) && isBreak(last.previousSibling)) keepingSelection(() => last.remove());
}

function cutToEnd(item) {
  const rest = currentRange().cloneRange();
  rest.collapse(false);
  rest.setEnd(item, item.childNodes.length);
  const box = boxOf(item);
  if (box && rest.comparePoint(item, 0) === 0) rest.setStartAfter(box); // the caret stood before the box
  return rest.extractContents();
}

function splitItem(item) {
  const rest = cutToEnd(item);
  dropEmptyNodes(rest);
  const next = makeItem(...rest.childNodes);
  ensureTypingTarget(item);
  item.after(next);
  focusItem(next);
}

function leaveChecklist(item) {
  const list = item.parentElement;
  const rest = cutToEnd(item);
  dropEmptyNodes(rest);
  const paragraph = document.createElement('p');
  paragraph.append(rest);
  if (isHollow(paragraph)) paragraph.append(document.createElement('br'));
  const following = [];
  while (item.nextSibling) {
    following.push(item.nextSibling);
    item.nextSibling.remove();
  }
  list.after(paragraph);
  if (following.length) paragraph.after(makeChecklist(...following));
  if (isBlankText(item.textContent) && !item.querySelector('img, hr')) item.remove(); else ensureTypingTarget(item);
  if (!list.querySelector('li')) list.remove();
  placeCaretAtEndPersistent(paragraph);
  setTimeout(() => reportLeaving(paragraph), EXIT_DIAGNOSTIC);
}

function reportLeaving(paragraph) {
  const anchor = document.getSelection().anchorNode;
  const parent = anchor && anchor.parentElement;
  const description = anchor ? anchor.nodeName + (parent ? ' in ' + parent.tagName : '') : 'none';
  post('plimLog', 'after300: anchor=' + description + ' in-escP=' + paragraph.contains(anchor));
}

// Splitting a range leaves empty text nodes and empty copies of the inline elements it crossed.
function dropEmptyNodes(fragment) {
  for (const node of [...fragment.childNodes]) {
    if (node.nodeType === Node.TEXT_NODE ? node.nodeValue === '' : isHollow(node) && node.nodeName !== 'BR'
      && !['IMG', 'HR'].includes(node.nodeName)) node.remove();
  }
}

// In this engine Backspace at the start of a checklist item does nothing (the box, which cannot be
// edited, is in the way) and Delete at its end leaves the joined item without a box. Both are done
// here, whichever key or gesture asked for them.
function onBeforeInput(event) {
  if (event.isComposing) return;
  if (event.inputType.startsWith('delete') && handleItemDeletion(event.inputType.endsWith('Forward'))) event.preventDefault();
}

function handleItemDeletion(isForward) {
  const range = currentRange();
  if (!range || !range.collapsed) return false;
  const block = blockAt(range.startContainer, LIST_BLOCKS);
  if (!isChecklistItem(block) || !isAtEdge(block, range, isForward)) return false;
  const [upper, lower] = isForward ? [block, neighbourItem(block, 1)] : [neighbourItem(block, -1), block];
  if (isForward && !lower) return false;
  if (upper) joinItems(upper, lower); else placeCaretAtStart(itemToParagraph(lower));
  finishEdit();
  return true;
}

// Is there nothing of the item's own line between the caret and its start (or end)?
function isAtEdge(item, range, isEnd) {
  const between = range.cloneRange();
  if (isEnd) {
    const nested = [...item.children].find(child => child.matches('ul, ol'));
    between.setEnd(item, nested ? [...item.childNodes].indexOf(nested) : item.childNodes.length);
  } else {
    const box = boxOf(item);
    if (!box) return false;
    if (range.comparePoint(item, 0) === 0) return true;
    between.setStartAfter(box);
  }
  const content = between.cloneContents();
  if (content.textContent.replace(/[\u200b\ufeff]/g, '') !== '' || content.querySelector('img, hr')) return false;
  return content.querySelectorAll('br').length <= (isEnd ? 1 : 0);
}

function joinItems(upper, lower) {
  const ownList = lower.parentElement;
  const box = boxOf(lower);
  if (box) box.remove();
  const nested = [...upper.children].find(child => child.matches('ul, ol'));
  const isSpare = node => node && node.nodeName === 'BR';
  const lastOfLine = nested ? nested.previousSibling : upper.lastChild;
  if (isSpare(lastOfLine)) lastOfLine.remove(); // it only held the line open
  const mark = document.createTextNode('');
  upper.insertBefore(mark, nested && upper.contains(nested) ? nested : null);
  mark.after(...lower.childNodes);
  const list = [...lower.children].filter(child => child.matches('ul, ol'));
  if (list.length) lower.before(...list);
  lower.remove();
  removeEmptyLists(ownList);
  ensureTypingTarget(upper);
  placeCaretAtMark(mark);
}

// The caret goes to the joint; the empty text node that marked it does not stay.
function placeCaretAtMark(mark) {
  const { previousSibling: before, nextSibling: after, parentNode: parent } = mark;
  if (before && before.nodeType === Node.TEXT_NODE) {
    placeCaretAt(before, before.length);
  } else if (after && after.nodeType === Node.TEXT_NODE) {
    placeCaretAt(after, 0);
  } else {
    placeCaretAt(parent, [...parent.childNodes].indexOf(mark));
  }
  keepingSelection(() => mark.remove());
  saveSelection();
}
