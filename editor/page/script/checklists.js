// ---- Checklists ------------------------------------------------------------------------------

// The box carries its state twice: as classes for the style sheet, and as role and aria-checked
// for screen readers. The latter also outlive the repair of stored notes, which takes classes away.
function setTicked(box, isTicked) {
  box.classList.toggle('checked', isTicked);
  box.setAttribute('aria-checked', String(isTicked));
  const item = box.closest('li');
  if (item) setItemTicked(item, isTicked);
}

function setItemTicked(item, isTicked) {
  if (item.classList.contains('checked') !== isTicked) item.classList.toggle('checked', isTicked);
  if (item.getAttribute('class') === '') item.removeAttribute('class');
}

function makeBox() {
  const box = document.createElement('span');
  box.className = 'chk';
  box.setAttribute('contenteditable', 'false');
  box.setAttribute('role', 'checkbox');
  box.setAttribute('aria-checked', 'false');
  return box;
}

function addBox(item) {
  const box = makeBox();
  item.prepend(box);
  setTicked(box, item.classList.contains('checked'));
  ensureTypingTarget(item);
}

function makeItem(...content) {
  const item = document.createElement('li');
  item.append(makeBox(), ...content);
  ensureTypingTarget(item);
  return item;
}

function makeChecklist(...items) {
  const list = document.createElement('ul');
  list.className = 'checklist';
  list.append(...items);
  return list;
}

function boxOf(item) {
  return [...item.children].find(child => child.classList.contains('chk')) || null;
}

function isChecklistItem(element) {
  return Boolean(element) && element.tagName === 'LI' && element.parentElement.matches('ul.checklist');
}

function ensureTypingTarget(item) {
  const holdsSomething = [...item.childNodes].some(node => (node.nodeType === Node.TEXT_NODE
    ? !isBlankText(node.nodeValue)
    : node.nodeType === Node.ELEMENT_NODE && !node.classList.contains('chk')));
  if (!holdsSomething) item.append(document.createElement('br'));
}

// A box that has lost its classes, or comes from a file that never had the role.
const CLASSLESS_BOX = 'ul.checklist > li > [role="checkbox"]:not(.chk), '
  + 'ul.checklist > li > span[contenteditable="false"]:first-child:not(.chk)';

function normalizeChecklists() {
  for (const input of [...bodyEl.querySelectorAll('ul.checklist input[type="checkbox"]')]) {
    const box = makeBox();
    const isTicked = input.checked;
    input.replaceWith(box);
    if (isTicked) setTicked(box, true);
  }
  for (const box of bodyEl.querySelectorAll(CLASSLESS_BOX)) {
    box.classList.add('chk');
    box.classList.toggle('checked', box.getAttribute('aria-checked') === 'true');
  }
  for (const box of bodyEl.querySelectorAll('ul.checklist .chk')) {
    const isTicked = box.classList.contains('checked');
    box.setAttribute('contenteditable', 'false');
    box.setAttribute('role', 'checkbox');
    setTicked(box, isTicked);
    const item = box.closest('li');
    if (item) ensureTypingTarget(item);
  }
}

function topList(item) {
  let list = item.parentElement;
  while (list.parentElement !== bodyEl && list.parentElement.closest('ul, ol')) list = list.parentElement.closest('ul, ol');
  return list;
}

// The item before or after this one as they are read, across nested lists.
function neighbourItem(item, step) {
  const items = [...topList(item).querySelectorAll('li')];
  return items[items.indexOf(item) + step] || null;
}

function removeEmptyLists(list) {
  for (let empty = list; empty && empty !== bodyEl && empty.matches('ul, ol') && !empty.querySelector('li');) {
    const parent = empty.parentElement;
    empty.remove();
    empty = parent;
  }
}

// A checklist item becomes a paragraph above its list.
function itemToParagraph(item) {
  const list = topList(item);
  const ownList = item.parentElement;
  const box = boxOf(item);
  if (box) box.remove();
  const nested = [...item.children].filter(child => child.matches('ul, ol'));
  const paragraph = renamed(item, 'p');
  if (nested.length) item.before(...nested);
  if (isHollow(paragraph)) paragraph.append(document.createElement('br'));
  list.before(paragraph);
  item.remove();
  removeEmptyLists(ownList);
  return paragraph;
}

// The engine's own indenting leaves the box behind, so the items of checklists are moved here. A
// nested list stands among the items, as the engine puts those of other lists.
function selectedChecklistItems() {
  const range = currentRange();
  const touched = [...bodyEl.querySelectorAll('ul.checklist > li')].filter(item => range.intersectsNode(item));
  const own = touched.filter(item => !touched.some(other => other !== item && other.contains(item)));
  const first = blockAt(range.startContainer, LIST_BLOCKS);
  return isChecklistItem(first) || own.length > 1 ? own : [];
}

function indentItem(item) {
  const { previousElementSibling: before, nextElementSibling: after } = item;
  if (before && before.matches('ul.checklist')) {
    before.append(item);
    if (after && after.matches('ul.checklist')) {
      before.append(...after.childNodes);
      after.remove();
    }
  } else if (after && after.matches('ul.checklist')) {
    after.prepend(item);
  } else {
    const list = makeChecklist();
    item.replaceWith(list);
    list.append(item);
  }
}

// One level up; from the first level the item becomes a paragraph between what stood above and below.
function outdentItem(item) {
  const list = item.parentElement;
  const outer = list.parentElement;
  const following = makeChecklist();
  while (item.nextSibling) following.append(item.nextSibling);
  let moved = item;
  if (outer.matches('ul, ol')) {
    list.after(item);
  } else if (outer.matches('li')) {
    outer.after(item);
  } else {
    const box = boxOf(item);
    if (box) box.remove();
    const nested = nestedListOf(item);
    if (nested) following.prepend(nested);
    moved = renamed(item, 'p');
    if (isHollow(moved)) moved.append(document.createElement('br'));
    list.after(moved);
    item.remove();
  }
  if (following.hasChildNodes()) moved.after(following);
  removeEmptyLists(list);
}

function toggleChecklist() {
  try {
    const node = anchorForToggle();
    const block = blockAt(node, LINE_BLOCKS);
    beginStep();
    if (!block) {
      const item = makeItem();
      bodyEl.append(makeChecklist(item));
      focusItem(item);
    } else if (block === bodyEl) {
      focusItem(lineToChecklist(node));
    } else if (isChecklistItem(block)) {
      placeCaretAtEnd(itemToParagraph(block));
    } else if (block.tagName === 'LI' && block.parentElement.tagName === 'UL') {
      block.prepend(makeBox());
      ensureTypingTarget(block);
      block.parentElement.classList.add('checklist');
      placeCaretAtEnd(block);
    } else {
      const item = makeItem(...block.childNodes);
      block.replaceWith(makeChecklist(item));
      tidyBody();
      placeCaretAtEnd(item);
    }
    notifyChange();
  } catch (error) {
    post('plimLog', 'toggle-error: ' + error.message);
  }
}

function anchorForToggle() {
  if (savedEl === titleEl) {
    savedRange = null;
    savedEl = bodyEl;
    placeCaretAtEnd(bodyEl);
  }
  dropStaleRange();
  if (savedRange) {
    try {
      bodyEl.focus();
      select(savedRange);
    } catch (error) {
      savedRange = null;
    }
  }
  if (!savedRange) placeCaretAtEnd(bodyEl);
  if (!document.getSelection().anchorNode) placeCaretAtEnd(bodyEl);
  return document.getSelection().anchorNode;
}

// A line of the body that stands in no block of its own.
function lineToChecklist(node) {
  if (node.nodeType !== Node.TEXT_NODE || node.parentNode !== bodyEl) {
    const item = makeItem();
    bodyEl.append(makeChecklist(item));
    return item;
  }
  const list = makeChecklist();
  node.before(list);
  const item = makeItem(node);
  list.append(item);
  return item;
}
