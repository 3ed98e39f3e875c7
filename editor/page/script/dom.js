// ---- DOM -------------------------------------------------------------------------------------

const LINE_BLOCKS = new Set(['H1', 'H2', 'H3', 'P', 'LI', 'DIV']);
const LIST_BLOCKS = new Set(['LI', 'UL', 'OL']);

// Parses and holds foreign markup: nothing in it loads, runs or reaches this page's document.
const inertDocument = document.implementation.createHTMLDocument('');

function post(handler, text) {
  try {
    window.webkit.messageHandlers[handler].postMessage(text);
  } catch (error) { /* no host: nothing to tell */ }
}

function escapeHTML(text) {
  return text.replace(/&/g, '&amp;').replace(/</g, '&lt;').replace(/>/g, '&gt;').replace(/"/g, '&quot;');
}

function elementOf(node) {
  if (!node) return null;
  return node.nodeType === Node.ELEMENT_NODE ? node : node.parentElement;
}

// The nearest ancestor-or-self of node with one of the tags, the body region included; null when
// node lies outside the body or nothing matches below it.
function blockAt(node, tags) {
  for (let n = node; n && n !== titleEl; n = n.parentNode) {
    if (n.nodeType === Node.ELEMENT_NODE && tags.has(n.tagName)) return n;
    if (n === bodyEl) return null;
  }
  return null;
}

// The line that node is part of: the list item, with the heading in it, or else the nearest block.
function lineAt(node) {
  const item = blockAt(node, LIST_BLOCKS);
  return item && item.tagName === 'LI' ? item : blockAt(node, LINE_BLOCKS);
}

function isBlankText(text) {
  return !text || text.trim() === '';
}

// Nothing a reader sees and nowhere to type.
function isHollow(node) {
  return node.textContent === '' && !node.querySelector('br, img, hr, li, .chk');
}

// All that an element holds, taken out of it, as one node: a call takes no more than some 100,000
// arguments, and a note may have more lines.
function contentOf(element) {
  const content = element.ownerDocument.createDocumentFragment();
  while (element.firstChild) content.append(element.firstChild);
  return content;
}

function unwrap(element) {
  element.replaceWith(contentOf(element));
}

function renamed(element, tag) {
  const other = element.ownerDocument.createElement(tag);
  other.append(contentOf(element));
  return other;
}

function parseInert(html) {
  const root = inertDocument.createElement('div');
  root.innerHTML = html;
  return root;
}
