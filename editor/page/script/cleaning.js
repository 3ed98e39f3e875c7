// ---- Cleaning --------------------------------------------------------------------------------

const ALLOWED = new Set(['P', 'H1', 'H2', 'H3', 'BR', 'B', 'STRONG', 'I', 'EM', 'U', 'S', 'STRIKE', 'DEL',
  'A', 'UL', 'OL', 'LI', 'HR', 'IMG']);
const BLOCKS = 'p, h1, h2, h3, h4, h5, h6, ul, ol, li, hr, div, blockquote, pre, table, section, article';

// Which inline formats a wrapper's style stands for, outermost first.
function formatsOfStyle(element) {
  const style = (element.getAttribute('style') || '').toLowerCase();
  const weight = element.style.fontWeight;
  const formats = [];
  if (/font-weight\s*:\s*(bold|700|600)/.test(style) || weight === 'bold' || parseInt(weight, 10) >= 600) formats.push('b');
  if (/font-style\s*:\s*italic/.test(style)) formats.push('i');
  if (/text-decoration[^:;]*:[^;]*underline/.test(style)) formats.push('u');
  if (/text-decoration[^:;]*:[^;]*line-through/.test(style)) formats.push('s');
  return formats;
}

function cleanNode(root) {
  for (const child of [...root.childNodes].reverse()) {
    if (child.nodeType === Node.COMMENT_NODE) child.remove();
    if (child.nodeType !== Node.ELEMENT_NODE) continue;
    cleanElement(child);
  }
}

// The wrappers come first on purpose, the boxes of checklists with them: a cleaned body keeps
// li.checked and loses its boxes, so that pasted lists bring no half-made controls along.
function cleanElement(element) {
  if (element.tagName === 'SPAN' || element.tagName === 'DIV') {
    const formats = formatsOfStyle(element);
    cleanNode(element);
    const content = contentOf(element);
    for (const tag of formats.reverse()) {
      const wrapper = element.ownerDocument.createElement(tag);
      wrapper.append(content);
      content.append(wrapper);
    }
    element.replaceWith(content);
    return;
  }
  cleanNode(element);
  if (!ALLOWED.has(element.tagName)) {
    unwrap(element);
    return;
  }
  keepAllowedAttributes(element);
}

function keepAllowedAttributes(element) {
  const kept = new Map();
  const names = { A: ['href'], IMG: ['src', 'alt'] }[element.tagName] || [];
  for (const name of names) {
    if (element.getAttribute(name)) kept.set(name, element.getAttribute(name));
  }
  if (element.tagName === 'UL' && element.classList.contains('checklist')) kept.set('class', 'checklist');
  if (element.tagName === 'LI' && element.classList.contains('checked')) kept.set('class', 'checked');
  for (const attribute of [...element.attributes]) element.removeAttributeNode(attribute);
  for (const [name, value] of kept) element.setAttribute(name, value);
}

function sanitizeHTML(html) {
  const root = makeHarmless(parseInert(html));
  cleanNode(root);
  return root.innerHTML;
}

// Cleaning unwraps every div, which would run the lines of notes (and web pages) that keep a line
// in a div into one another. So each such line becomes a paragraph first.
function linesAsParagraphs(root) {
  for (const div of [...root.querySelectorAll('div')].reverse()) {
    if (div.parentElement.closest('p, h1, h2, h3, a, b, strong, i, em, u, s, strike, del, span')) continue;
    if (div.querySelector(BLOCKS)) {
      wrapInlineRuns(div);
    } else {
      const line = renamed(div, 'p');
      if (div.hasAttribute('style')) {
        const span = div.ownerDocument.createElement('span');
        span.setAttribute('style', div.getAttribute('style'));
        span.append(contentOf(line));
        line.append(span);
      }
      if (isHollow(line)) line.append(div.ownerDocument.createElement('br'));
      div.replaceWith(line);
    }
  }
}

function wrapInlineRuns(element) {
  let run = null;
  for (const child of [...element.childNodes]) {
    const isBlock = child.nodeType === Node.ELEMENT_NODE && (child.matches(BLOCKS) || child.querySelector(BLOCKS));
    if (isBlock) {
      run = null;
    } else if (run) {
      run.append(child);
    } else if (child.nodeType === Node.ELEMENT_NODE || !isBlankText(child.nodeValue)) {
      run = element.ownerDocument.createElement('p');
      child.before(run);
      run.append(child);
    }
  }
}

// What is a line, or stands apart, in a foreign document becomes a div, and so a paragraph in a note.
const FOREIGN_LINES = 'tr, h4, h5, h6, blockquote, section, article, header, footer, main, aside, nav, address, figure, figcaption, dl, dt, dd, pre, caption';

function foreignBlocksAsLines(root) {
  for (const mark of [...root.querySelectorAll('br[class$="interchange-newline"]')]) mark.remove(); // the clipboard's, not the text's
  for (const cell of root.querySelectorAll('td, th')) if (cell.nextElementSibling) cell.append(' ');
  for (const code of root.querySelectorAll('pre')) {
    const texts = root.ownerDocument.createTreeWalker(code, NodeFilter.SHOW_TEXT);
    const found = [];
    while (texts.nextNode()) found.push(texts.currentNode);
    for (const text of found) {
      const lines = text.data.replace(/\n$/, '').split('\n');
      const parts = root.ownerDocument.createDocumentFragment();
      lines.forEach((line, i) => parts.append(...(i ? [root.ownerDocument.createElement('br'), line] : [line])));
      text.replaceWith(parts);
    }
  }
  for (const block of [...root.querySelectorAll(FOREIGN_LINES)]) block.replaceWith(renamed(block, 'div'));
  for (const holder of [...root.querySelectorAll('table, tbody, thead, tfoot, td, th')].reverse()) unwrap(holder);
}

function sanitizeLines(html) {
  const root = makeHarmless(parseInert(html));
  foreignBlocksAsLines(root);
  linesAsParagraphs(root);
  cleanNode(root);
  return root.innerHTML;
}

// Looks for the marks in the markup, not in the text: a note may well speak of style="…".
function sanitizeCurrentBody() {
  if (!bodyEl.querySelector('[style], [class^="text-content"], div')) return;
  bodyEl.innerHTML = sanitizeLines(bodyEl.innerHTML);
}
