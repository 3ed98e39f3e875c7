// ---- Tidying what the engine leaves behind ---------------------------------------------------------
//
// Joining and turning lines, the engine makes markup that falls apart when it is parsed again (a
// list inside a paragraph) or that would be cleaned away together with the boxes of checklists
// (spans that freeze a style). It is put right where it arises, so that a note is stored in a form
// that loads as it looks.

const FORMATS = 'b, strong, i, em, u, s, strike, del, a';
// What typing on in a format that was switched off leaves.
const STYLED = 'span:not(.chk), font, [style]';
const UNTIDY = STYLED + ', div, blockquote, [dir], li > p, li hr, '
  + ':is(ul, ol) > :not(li, ul, ol), li:empty, li > :is(ul, ol):first-child, li > .chk + :is(ul, ol), :not(ul, ol) > li, a a, '
  + `:is(${FORMATS}) :is(p, h1, h2, h3, ul, ol, hr), p :is(p, h1, h2, h3, ul, ol, hr), :is(h1, h2, h3) :is(h1, h2, h3, p, ul, ol, hr), `
  + ':not(ul).checklist, .chk, ul.checklist > li, ul.checklist > ul:not(.checklist), ul.checklist li > ul:not(.checklist), li.checked';

function isUntidyAtCaret() {
  const item = blockAt(document.getSelection().anchorNode, LIST_BLOCKS);
  return bodyEl.querySelector(STYLED) || (isChecklistItem(item) && boxOf(item) !== item.firstChild);
}

function tidyBody() {
  if (!bodyEl.querySelector(UNTIDY) && !holdsLooseText()) return;
  keepingSelection(() => {
    tidyStyles();
    tidyNesting();
    tidyLists();
    tidyBoxes();
  });
}

// Text that stands in a list beside its items.
function holdsLooseText() {
  return [...bodyEl.querySelectorAll('ul, ol')].some(list => [...list.childNodes].some(node => node.nodeType === Node.TEXT_NODE
    && !isBlankText(node.nodeValue)));
}

function tidyStyles() {
  for (const inline of bodyEl.querySelectorAll(`:is(span, font, ${FORMATS})[style]:not(.chk)`)) keepFormats(inline);
  for (const element of bodyEl.querySelectorAll('[style]')) element.removeAttribute('style');
  for (const element of bodyEl.querySelectorAll('[dir]')) element.removeAttribute('dir');
  for (const element of [...bodyEl.querySelectorAll('span:not(.chk), font')]) unwrap(element);
  if (bodyEl.querySelector('div, blockquote')) {
    for (const quote of [...bodyEl.querySelectorAll('blockquote')]) quote.replaceWith(renamed(quote, 'div'));
    linesAsParagraphs(bodyEl);
    for (const div of [...bodyEl.querySelectorAll('div')]) unwrap(div);
  }
}

function tidyTitle() {
  for (const element of titleEl.querySelectorAll('[style]')) element.removeAttribute('style');
  for (const element of [...titleEl.querySelectorAll('span, font')]) unwrap(element);
}

// Joining lines, the engine writes the formats of the moved text as styles. Those of a heading are
// not the text's own; they stay behind.
function keepFormats(span) {
  const { fontWeight, fontStyle, textDecorationLine, textDecoration } = span.style;
  const decoration = textDecorationLine + ' ' + textDecoration;
  const formats = [['b', ['bold', '700'].includes(fontWeight)], ['i', fontStyle === 'italic'],
    ['u', decoration.includes('underline')], ['s', decoration.includes('line-through')]];
  for (const [tag] of formats.filter(([name, isSet]) => isSet && !span.closest(name))) {
    const wrapper = document.createElement(tag);
    wrapper.append(contentOf(span));
    span.append(wrapper);
  }
}

// Lines that a list gave up stand in the body with a break after each; they become paragraphs.
function tidyLooseLines() {
  const range = currentRange();
  if (!range) return;
  const isInline = node => node && !(node.nodeType === Node.ELEMENT_NODE && node.matches(BLOCKS));
  const isTouched = node => range.intersectsNode(node) || (range.startContainer === bodyEl && bodyEl.childNodes[range.startOffset] === node);
  const loose = [...bodyEl.childNodes].filter(node => isInline(node) && isTouched(node));
  if (!loose.length) return;
  let [first] = loose;
  let last = loose[loose.length - 1];
  while (isInline(first.previousSibling) && first.previousSibling.nodeName !== 'BR') first = first.previousSibling;
  while (isInline(last.nextSibling) && last.nodeName !== 'BR') last = last.nextSibling;
  keepingSelection(() => {
    let line = null;
    for (let node = first; node;) {
      const next = node === last ? null : node.nextSibling;
      if (!isInline(node)) {
        line = null;
      } else if (line || !(node.nodeType === Node.TEXT_NODE && isBlankText(node.nodeValue))) {
        if (!line) {
          line = document.createElement('p');
          node.before(line);
        }
        line.append(node);
        if (node.nodeName === 'BR') {
          if (line.childNodes.length > 1) node.remove();
          line = null;
        }
      }
      node = next;
    }
  });
  const { anchorNode, anchorOffset, isCollapsed } = document.getSelection();
  const line = isCollapsed && anchorNode === bodyEl && bodyEl.childNodes[anchorOffset];
  if (line && line.nodeName === 'P') document.getSelection().collapse(line, 0);
}

function tidyNesting() {
  const pairs = [[FORMATS, 'p, h1, h2, h3, ul, ol, hr'], ['p', 'p, h1, h2, h3, ul, ol, hr'], ['h1, h2, h3', 'h1, h2, h3, p, ul, ol, hr'], ['li', 'hr']];
  for (const [hosts, blocks] of pairs) {
    for (const block of [...bodyEl.querySelectorAll(blocks)]) {
      for (let host = hostOf(block, hosts); host; host = hostOf(block, hosts)) liftOut(block, host);
    }
  }
  for (const link of [...bodyEl.querySelectorAll('a a')]) unwrap(link);
}

function hostOf(block, hosts) {
  const host = block.parentElement.closest(hosts);
  return host && host !== bodyEl && bodyEl.contains(host) ? host : null;
}

// A list holds items and lists, an item text, a heading and lists.
function tidyLists() {
  for (const item of [...bodyEl.querySelectorAll('li')]) {
    while (item.parentElement !== bodyEl && !item.parentElement.matches('ul, ol')) liftOut(item, item.parentElement);
    if (item.parentElement === bodyEl) item.replaceWith(lineOf(item));
  }
  for (const line of [...bodyEl.querySelectorAll('li > p')]) openLine(line);
  for (const list of [...bodyEl.querySelectorAll('ul, ol')]) {
    for (const child of [...list.childNodes]) {
      if (child.nodeType === Node.TEXT_NODE ? isBlankText(child.nodeValue) : child.matches('li, ul, ol')) continue;
      if (child.nodeType === Node.ELEMENT_NODE && child.matches(BLOCKS)) {
        for (let host = hostOf(child, 'ul, ol'); host; host = hostOf(child, 'ul, ol')) liftOut(child, host);
      } else {
        const item = document.createElement('li');
        child.before(item);
        item.append(child);
      }
    }
  }
  for (const item of bodyEl.querySelectorAll('li')) {
    const box = boxOf(item);
    const first = box ? box.nextSibling : item.firstChild;
    if (!first || (first.nodeType === Node.ELEMENT_NODE && first.matches('ul, ol'))) item.insertBefore(document.createElement('br'), first);
  }
  for (const list of [...bodyEl.querySelectorAll('ul, ol')]) removeEmptyLists(list);
}

// A paragraph in an item: its text goes on in the item, on a line of its own.
function openLine(line) {
  const isText = node => node && !(node.nodeType === Node.ELEMENT_NODE && node.matches('br, ul, ol, h1, h2, h3, .chk'));
  if (isText(line.previousSibling)) line.before(document.createElement('br'));
  if (isText(line.nextSibling) || (line.nextSibling && line.nextSibling.nodeName === 'P')) line.after(document.createElement('br'));
  unwrap(line);
}

// Takes block out of host and puts it behind; what followed it goes on in a host of its own.
function liftOut(block, host) {
  const rest = document.createRange();
  rest.setStartAfter(block);
  rest.setEnd(host, host.childNodes.length);
  const tail = host.cloneNode(false);
  tail.append(rest.extractContents());
  dropEmptyNodes(tail);
  host.after(block, tail);
  if (isHollow(tail) && !tail.querySelector('li')) tail.remove();
  else if (isChecklistItem(host) && boxOf(host)) {
    tail.classList.remove('checked');
    addBox(tail);
  }
  if (isHollow(host)) host.remove();
  else if (isChecklistItem(host)) ensureTypingTarget(host);
}

function tidyBoxes() {
  for (const list of bodyEl.querySelectorAll('.checklist:not(ul)')) list.classList.remove('checklist');
  for (const list of bodyEl.querySelectorAll('ul.checklist ul:not(.checklist)')) {
    if (list.querySelector(':scope > li > .chk')) list.classList.add('checklist');
  }
  for (const box of [...bodyEl.querySelectorAll('.chk')]) {
    const item = box.closest('li');
    if (!isChecklistItem(item) || (boxOf(item) && boxOf(item) !== box)) {
      box.remove();
    } else if (item.firstChild !== box) {
      item.prepend(box);
    }
  }
  for (const item of bodyEl.querySelectorAll('li.checked')) {
    const box = boxOf(item);
    if (!isChecklistItem(item) || (box && !box.classList.contains('checked'))) setItemTicked(item, false);
  }
  for (const item of bodyEl.querySelectorAll('ul.checklist > li')) {
    const box = boxOf(item);
    if (!box) {
      // Parting and joining items, the engine leaves the box with one of them.
      if (!plainItems.has(item)) addBox(item);
      continue;
    }
    setItemTicked(item, box.classList.contains('checked'));
    ensureTypingTarget(item);
  }
  for (const element of bodyEl.querySelectorAll('[class=""]')) element.removeAttribute('class');
}
