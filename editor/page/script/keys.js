// ---- Keys ------------------------------------------------------------------------------------

const FORMAT_KEYS = { KeyB: 'bold', KeyI: 'italic', KeyU: 'underline' };

function isComposing(event) {
  return event.isComposing || event.keyCode === 229;
}

function isAltGr(event) {
  return event.getModifierState('AltGraph');
}

// Alt with a letter opens a menu, where there is one by that letter, and never writes it. Elsewhere,
// on keyboards whose Alt makes letters, it does.
const ALT_WRITES = navigator.platform.startsWith('Mac');

function isMenuKey(event) {
  return event.altKey && !event.metaKey && !event.ctrlKey && !isAltGr(event) && event.key.length === 1 && !ALT_WRITES;
}

function onTitleKey(event) {
  if (isComposing(event)) return;
  if (isMenuKey(event)) event.preventDefault();
  if (event.key !== 'Enter') return;
  if (event.metaKey || event.ctrlKey || event.altKey || event.shiftKey) return;
  event.preventDefault();
  endStep();
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
    beginStep();
    document.execCommand(FORMAT_KEYS[event.code]);
    finishEdit();
    return;
  }
  if (isMenuKey(event)) event.preventDefault();
  if (event.key !== 'Enter' || event.metaKey || event.ctrlKey || event.altKey) return;
  settleCaret();
  const { anchorNode } = document.getSelection();
  const line = lineAt(anchorNode);
  const block = blockAt(anchorNode, LINE_BLOCKS);
  if (isChecklistItem(line)) {
    event.preventDefault();
    beginStep();
    if (event.shiftKey) leaveChecklist(line); else splitItem(line);
    finishEdit();
  } else if (event.shiftKey) {
    // At the end of a block the engine holds the new line open with a second break. It stays:
    // without it the caret would be drawn, and the next letter written, on the line above.
    event.preventDefault();
    beginStep();
    document.execCommand('insertLineBreak');
    finishEdit();
  } else if (block && ['H1', 'H2', 'H3'].includes(block.tagName)) {
    event.preventDefault();
    beginStep();
    document.execCommand('insertParagraph');
    formatBlock('p');
    finishEdit();
  }
}

function finishEdit() {
  tidyBody();
  saveSelection();
  notifyChange();
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
  const [first] = rest.children;
  if (first && first.matches('h1, h2, h3')) unwrap(first); // a heading does not go on in the next line
  if (rest.firstChild && rest.firstChild.nodeName === 'UL') rest.prepend(document.createElement('br'));
  const next = makeItem(contentOf(rest));
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
  const following = takeItemsBelow(item);
  list.after(paragraph);
  if (following.hasChildNodes()) paragraph.after(following);
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

// In this engine Backspace at the start of a checklist item, and at some places beside one, does nothing
// (the box, which cannot be edited, is in the way), and Delete at its end leaves the joined item
// without a box. Both are done here, whichever key or gesture asked for them.
function deleteAtCaret(event) {
  const range = currentRange();
  if (!range) return;
  beginStep('deleting');
  const isHandled = event.inputType.endsWith('Forward') ? deleteAtLineEnd(range) : deleteAtLineStart(range);
  if (!isHandled) return;
  event.preventDefault();
  endStep();
  finishEdit();
}

function deleteAtLineStart(range) {
  const divider = range.startContainer === bodyEl && bodyEl.childNodes[range.startOffset - 1];
  if (divider && divider.nodeName === 'HR') {
    keepingSelection(() => divider.remove());
    return true;
  }
  const line = lineAt(range.startContainer);
  if (!line || line === bodyEl || !isAtLineStart(line, range)) return false;
  return line.tagName === 'LI' ? joinItemAbove(line) : joinLineAbove(line);
}

function joinItemAbove(item) {
  const upper = itemAbove(item);
  const isPlain = !isChecklistItem(item);
  if (isPlain && upper && upper === item.previousElementSibling && !nestedListOf(upper)) return false; // the engine joins these well
  if (upper) joinLine(upper, item);
  else if (isPlain) keepingSelection(() => outdentItem(item));
  else placeCaretAtStart(itemToParagraph(item));
  return true;
}

// A line below a checklist goes on with its last item.
function joinLineAbove(line) {
  const list = line.previousElementSibling;
  if (!list || !list.matches('ul, ol') || !list.querySelector('.chk') || !isBlankText(textBetween(list, line))) return false;
  const items = list.querySelectorAll('li');
  joinLine(items[items.length - 1], line);
  return true;
}

function textBetween(upper, lower) {
  let text = '';
  for (let node = upper.nextSibling; node && node !== lower; node = node.nextSibling) text += node.textContent;
  return text;
}

function deleteAtLineEnd(range) {
  const line = lineAt(range.startContainer);
  if (!line || !isAtLineEnd(line, range)) return false;
  const lower = itemBelow(line, range);
  if (!lower) return false;
  joinLine(line, lower);
  return true;
}

function holdsNothingVisible(range, breaksAllowed) {
  const content = range.cloneContents();
  return content.textContent.replace(/[\u200b\ufeff]/g, '') === '' && !content.querySelector('img, hr')
    && content.querySelectorAll('br').length <= breaksAllowed;
}

function isAtLineStart(line, range) {
  const box = boxOf(line);
  if (range.comparePoint(line, 0) === 0) return true;
  const between = range.cloneRange();
  if (box) between.setStartAfter(box); else between.setStart(line, 0);
  if (holdsNothingVisible(between, 0)) return true;
  // Behind the break that holds an empty line open is the start of that line, too.
  const end = nestedListOf(line);
  if (end) between.setEndBefore(end); else between.setEnd(line, line.childNodes.length);
  return holdsNothingVisible(between, 1);
}

// The node of the line, or of the body for a line without a block, before which the line ends.
function endOfLine(line, range) {
  if (line !== bodyEl) return nestedListOf(line);
  let node = range.startContainer;
  if (node === bodyEl) return bodyEl.childNodes[range.startOffset] || null;
  while (node.parentNode !== bodyEl) node = node.parentNode;
  while (node && !(node.nodeType === Node.ELEMENT_NODE && node.matches(BLOCKS))) node = node.nextSibling;
  return node;
}

function isAtLineEnd(line, range) {
  const between = range.cloneRange();
  const end = endOfLine(line, range);
  if (end) between.setEndBefore(end); else between.setEnd(line, line.childNodes.length);
  return holdsNothingVisible(between, 1);
}

// The checklist item that is read right after the line; null when something else follows.
function itemBelow(line, range) {
  let next = endOfLine(line, range);
  for (let node = line; !next && node !== bodyEl; node = node.parentNode) {
    next = node.nextSibling;
    while (next && next.nodeType === Node.TEXT_NODE && isBlankText(next.nodeValue)) next = next.nextSibling;
  }
  const item = next && next.nodeType === Node.ELEMENT_NODE && (next.matches('li') ? next : next.matches('ul, ol') && next.querySelector('li'));
  return item && boxOf(item) ? item : null;
}

// The item's own line goes to the end of the upper line, its nested lists stay where they are.
function joinLine(upper, lower) {
  const ownList = lower.parentElement;
  const box = boxOf(lower);
  if (box) box.remove();
  const nested = [...lower.children].filter(child => child.matches('ul, ol'));
  if (nested.length) lower.before(...nested);
  const content = [...lower.childNodes].filter(node => node.nodeName !== 'BR' || lower.childNodes.length > 1);
  const below = upper === bodyEl ? ownListAtTop(ownList) : nestedListOf(upper);
  const heading = upper.matches('li') && (below ? below.previousSibling : upper.lastChild);
  const isHeading = Boolean(heading) && ['H1', 'H2', 'H3'].includes(heading.nodeName);
  const target = isHeading ? heading : upper;
  const end = isHeading ? null : below;
  const last = end ? end.previousSibling : target.lastChild;
  if (last && last.nodeName === 'BR' && (content.length || last.previousSibling !== boxOf(upper))) last.remove(); // it only held the line open
  const mark = document.createTextNode('');
  target.insertBefore(mark, end);
  mark.after(...content);
  lower.remove();
  removeEmptyLists(ownList);
  if (isChecklistItem(upper)) ensureTypingTarget(upper);
  else if (isHollow(upper)) upper.append(document.createElement('br'));
  placeCaretAtMark(mark);
}

function ownListAtTop(list) {
  while (list.parentElement !== bodyEl) list = list.parentElement;
  return list;
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
