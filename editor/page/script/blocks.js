// ---- Lines and their blocks ------------------------------------------------------------------
//
// The engine's own commands for blocks and lists double the text of a line that is broken within a
// link or a format, put whole lists into headings, lose the boxes of checklists and the caret. So
// the page changes blocks itself.

const LINES = 'p, h1, h2, h3, li';

// The lines the selection lies in, as blocks; a line without a block gets one. An item counts as
// one line with the heading in it, and without the lists in it.
function selectedLines() {
  tidyLooseLines();
  const range = currentRange();
  if (!range) return [];
  const touched = [...bodyEl.querySelectorAll(LINES)].filter(line => !(line.parentElement.closest('li') && !line.matches('li'))
    && isTouched(line, range));
  // What is selected up to the very start of a line leaves that line out.
  if (touched.length > 1 && !range.collapsed && endsAtStartOf(touched[touched.length - 1], range)) touched.pop();
  return touched;
}

function isTouched(line, range) {
  const nested = line.matches('li') && nestedListOf(line);
  if (!nested) return range.intersectsNode(line);
  const own = document.createRange();
  own.setStart(line, 0);
  own.setEndBefore(nested);
  return range.compareBoundaryPoints(Range.END_TO_START, own) <= 0 && range.compareBoundaryPoints(Range.START_TO_END, own) >= 0;
}

function endsAtStartOf(line, range) {
  const before = document.createRange();
  before.setStart(line, 0);
  before.setEnd(range.endContainer, range.endOffset);
  return line.contains(range.endContainer) && holdsNothingVisible(before, 0);
}

function linesOrNewLine() {
  settleCaret();
  const lines = selectedLines();
  if (lines.length) return lines;
  const paragraph = document.createElement('p');
  paragraph.append(document.createElement('br'));
  const range = currentRange();
  if (range && range.startContainer === bodyEl) bodyEl.insertBefore(paragraph, bodyEl.childNodes[range.startOffset] || null);
  else bodyEl.append(paragraph);
  placeCaretAtStart(paragraph);
  return [paragraph];
}

function formatBlock(tag) {
  const lines = linesOrNewLine();
  keepingSelection(() => lines.forEach(line => {
    if (line.matches('li')) formatItem(line, tag); else line.replaceWith(renamed(line, tag));
  }));
}

// The line of an item becomes a heading within it, or goes without.
function formatItem(item, tag) {
  for (const block of [...item.children].filter(child => child.matches('h1, h2, h3, p'))) unwrap(block);
  if (tag === 'p') return;
  const box = boxOf(item);
  const end = nestedListOf(item);
  const line = document.createElement(tag);
  for (let node = box ? box.nextSibling : item.firstChild; node && node !== end;) {
    const next = node.nextSibling;
    line.append(node);
    node = next;
  }
  if (isHollow(line)) line.append(document.createElement('br'));
  item.insertBefore(line, end);
}

// Lines that are all items of such lists already leave them; otherwise all become items.
function toggleList(tag) {
  const lines = linesOrNewLine();
  const isItem = line => line.matches('li') && line.parentElement.localName === tag;
  keepingSelection(() => {
    if (lines.every(isItem)) lines.reverse().forEach(outdentItem);
    else for (const line of lines) if (!isItem(line)) moveToList(line, tag);
  });
}

// Into the list of that kind right above, when there is one, and with the one right below.
function moveToList(line, tag) {
  const list = document.createElement(tag);
  if (line.matches('li')) {
    partList(line, list);
    const box = boxOf(line);
    if (box) box.remove();
    setItemTicked(line, false);
  } else {
    const item = document.createElement('li');
    line.replaceWith(list);
    list.append(item);
    item.append(...(line.matches('p') ? line.childNodes : [line]));
  }
  const upper = list.previousElementSibling;
  const joined = joinLists(upper, list) ? upper : list;
  joinLists(joined, joined.nextElementSibling);
}

// Takes the item into a new list of its own, between the items above and below it.
function partList(item, between) {
  const list = item.parentElement;
  const following = takeItemsBelow(item);
  list.after(between);
  if (following.hasChildNodes()) between.after(following);
  between.append(item);
  removeEmptyLists(list);
}

function joinLists(upper, lower) {
  if (!upper || !lower || !upper.matches('ul, ol') || !isSameKind(upper, lower)) return false;
  if (!isBlankText(textBetween(upper, lower))) return false;
  upper.append(contentOf(lower));
  lower.remove();
  return true;
}
