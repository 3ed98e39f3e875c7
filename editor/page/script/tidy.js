// ---- Tidying what the engine leaves behind ---------------------------------------------------------
//
// Joining and turning lines, the engine makes markup that falls apart when it is parsed again (a
// list inside a paragraph) or that would be cleaned away together with the boxes of checklists
// (spans that freeze a style). It is put right where it arises, so that a note is stored in a form
// that loads as it looks.

const UNTIDY = 'span:not(.chk), font, div, blockquote, [style], [dir], li > li, '
  + 'p p, p h1, p h2, p h3, p ul, p ol, p hr, h1 h1, h1 h2, h1 h3, h2 h1, h2 h2, h2 h3, h3 h1, h3 h2, h3 h3, '
  + 'h1 hr, h2 hr, h3 hr, a a, '
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

function tidyNesting() {
  const pairs = [['p', 'p, h1, h2, h3, ul, ol, hr'], ['h1, h2, h3', 'h1, h2, h3, hr']];
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
