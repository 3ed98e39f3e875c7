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
    ? /[^ \t\r\n\f]/.test(node.nodeValue)
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
  for (const remnant of [...bodyEl.querySelectorAll(CLASSLESS_BOX)]) {
    const box = makeBox();
    remnant.replaceWith(box, contentOf(remnant));
    setTicked(box, remnant.getAttribute('aria-checked') === 'true');
  }
  for (const box of bodyEl.querySelectorAll('ul.checklist .chk')) {
    const isTicked = box.classList.contains('checked');
    box.setAttribute('contenteditable', 'false');
    box.setAttribute('role', 'checkbox');
    setTicked(box, isTicked);
    const item = box.closest('li');
    if (item) ensureTypingTarget(item);
  }
  keepPlainItems();
}

// A checklist item becomes a paragraph above its list.
function itemToParagraph(item) {
  const list = topList(item);
  const ownList = item.parentElement;
  const nested = [...item.children].filter(child => child.matches('ul, ol'));
  if (nested.length) item.before(...nested);
  const paragraph = lineOf(item);
  list.before(paragraph);
  item.remove();
  removeEmptyLists(ownList);
  return paragraph;
}

// Items of a checklist that never had a box: the others of a list when one of its items got it.
let plainItems = new WeakSet();

function keepPlainItems() {
  plainItems = new WeakSet([...bodyEl.querySelectorAll('ul.checklist > li')].filter(item => !boxOf(item)));
}

function toggleChecklist() {
  try {
    const node = anchorForToggle();
    const block = lineAt(node);
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
      keepPlainItems();
      placeCaretAtEnd(block);
    } else {
      const item = makeItem(contentOf(block));
      block.replaceWith(makeChecklist(item));
      tidyBody();
      placeCaretAtEnd(item);
    }
    tidyBody();
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
      moveFocus(bodyEl);
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
