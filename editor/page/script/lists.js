// ---- Lists -----------------------------------------------------------------------------------

function nestedListOf(line) {
  return [...line.children].find(child => child.matches('ul, ol')) || null;
}

function topList(item) {
  let list = item.parentElement;
  while (list.parentElement !== bodyEl && list.parentElement.closest('ul, ol')) list = list.parentElement.closest('ul, ol');
  return list;
}

// The item before this one as they are read, across nested lists.
function itemAbove(item) {
  const items = [...topList(item).querySelectorAll('li')];
  return items[items.indexOf(item) - 1] || null;
}

function removeEmptyLists(list) {
  for (let empty = list; empty && empty !== bodyEl && empty.matches('ul, ol') && !empty.querySelector('li');) {
    const parent = empty.parentElement;
    empty.remove();
    empty = parent;
  }
}

// The engine's own indenting leaves boxes behind, and whatever else but text it finds in an item.
// So the items are moved here. A nested list stands among the items, as the engine puts it.
function onTabInItem(event) {
  event.preventDefault();
  beginStep();
  const items = selectedLines().filter(line => line.matches('li'));
  keepingSelection(() => (event.shiftKey ? items.reverse().forEach(outdentItem) : items.forEach(indentItem)));
  finishEdit();
  reportSoon(REPORT_AFTER_COMMAND);
}

// The items below this one, in a list of their own that stands nowhere yet; it may be empty.
function takeItemsBelow(item) {
  const list = item.parentElement.cloneNode(false);
  while (item.nextSibling) list.append(item.nextSibling);
  return list;
}

function isSameKind(list, other) {
  return Boolean(other) && other.tagName === list.tagName && other.matches('.checklist') === list.matches('.checklist');
}

function indentItem(item) {
  const list = item.parentElement;
  const { previousElementSibling: before, nextElementSibling: after } = item;
  if (isSameKind(list, before)) {
    before.append(item);
    joinLists(before, after);
  } else if (isSameKind(list, after)) {
    after.prepend(item);
  } else {
    const nested = list.cloneNode(false);
    item.replaceWith(nested);
    nested.append(item);
  }
}

// One level up; from the first level the item becomes a paragraph between what stood above and below.
function outdentItem(item) {
  const list = item.parentElement;
  const outer = list.parentElement;
  const following = takeItemsBelow(item);
  let moved = item;
  if (outer.matches('ul, ol')) {
    list.after(item);
  } else if (outer.matches('li')) {
    outer.after(item);
  } else {
    const nested = nestedListOf(item);
    if (nested) following.prepend(nested);
    moved = lineOf(item);
    list.after(moved);
    item.remove();
  }
  if (moved === item && isChecklistItem(item) && !boxOf(item)) addBox(item);
  if (following.hasChildNodes()) moved.after(following);
  removeEmptyLists(list);
}

// The item's content as a line of its own: its heading, when that is all it holds, or a paragraph.
function lineOf(item) {
  const box = boxOf(item);
  if (box) box.remove();
  const [first] = item.children;
  if (item.childNodes.length === 1 && first && first.matches('h1, h2, h3')) return first;
  for (const block of [...item.children].filter(child => child.matches('p, h1, h2, h3'))) unwrap(block);
  const line = renamed(item, 'p');
  if (isHollow(line)) line.append(document.createElement('br'));
  return line;
}

// A break at the end of a line that holds something else shows nothing.
function dropSpareBreak(line) {
  const last = line && line !== bodyEl && line.lastChild;
  if (last && last.nodeName === 'BR' && last.previousSibling && last.previousSibling.nodeName !== 'BR') {
    keepingSelection(() => last.remove());
  }
}
