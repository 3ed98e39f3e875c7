// ---- Tidying what the engine leaves behind ---------------------------------------------------------
//
// Joining and turning lines, the engine makes markup that falls apart when it is parsed again (a
// list inside a paragraph) or that would be cleaned away together with the boxes of checklists
// (spans that freeze a style). It is put right where it arises, so that a note is stored in a form
// that loads as it looks.

const UNTIDY = 'span:not(.chk), font, div, blockquote, [style], [dir], li > li, '
  + 'p p, p h1, p h2, p h3, p ul, p ol, p hr, h1 h1, h1 h2, h1 h3, h2 h1, h2 h2, h2 h3, h3 h1, h3 h2, h3 h3, '
  + 'h1 hr, h2 hr, h3 hr, h1 ul, h1 ol, h2 ul, h2 ol, h3 ul, h3 ol, a a, '
  + ':not(ul).checklist, .chk, ul.checklist > ul:not(.checklist), ul.checklist li > ul:not(.checklist), li.checked';

function tidyBody() {
  if (!bodyEl.querySelector(UNTIDY)) return;
  keepingSelection(() => {
    tidyStyles();
    tidyNesting();
    tidyBoxes();
  });
}

function tidyStyles() {
  for (const element of bodyEl.querySelectorAll('[style]')) element.removeAttribute('style');
  for (const element of bodyEl.querySelectorAll('[dir]')) element.removeAttribute('dir');
  for (const element of [...bodyEl.querySelectorAll('span:not(.chk), font')]) unwrap(element);
  if (bodyEl.querySelector('div, blockquote')) {
    for (const quote of [...bodyEl.querySelectorAll('blockquote')]) quote.replaceWith(renamed(quote, 'div'));
    linesAsParagraphs(bodyEl);
    for (const div of [...bodyEl.querySelectorAll('div')]) unwrap(div);
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
  const pairs = [['p', 'p, h1, h2, h3, ul, ol, hr'], ['h1, h2, h3', 'h1, h2, h3, ul, ol, hr']];
  for (const [hosts, blocks] of pairs) {
    for (const block of [...bodyEl.querySelectorAll(blocks)]) {
      for (let host = block.parentElement.closest(hosts); host && host !== bodyEl && bodyEl.contains(host);
        host = block.parentElement.closest(hosts)) liftOut(block, host);
    }
  }
  for (const item of [...bodyEl.querySelectorAll('li > li')]) item.parentElement.after(item);
  for (const link of [...bodyEl.querySelectorAll('a a')]) unwrap(link);
}

// Takes block out of host and puts it behind; what followed it goes on in a host of its own.
function liftOut(block, host) {
  const rest = document.createRange();
  rest.setStartAfter(block);
  rest.setEnd(host, host.childNodes.length);
  const tail = host.cloneNode(false);
  tail.append(rest.extractContents());
  host.after(block, tail);
  if (isHollow(tail)) tail.remove();
  if (isHollow(host)) host.remove();
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
    if (!box) continue;
    setItemTicked(item, box.classList.contains('checked'));
    ensureTypingTarget(item);
  }
  for (const element of bodyEl.querySelectorAll('[class=""]')) element.removeAttribute('class');
}
