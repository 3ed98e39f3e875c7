// ---- Links -----------------------------------------------------------------------------------
//
// A click places the caret; with Ctrl it opens the link. The engine does neither within editable
// text, and does not tell of the link under the pointer there. The host checks every address anew.

const OPENABLE_SCHEMES = new Set(['http:', 'https:', 'mailto:']);

function linkOf(node) {
  const element = elementOf(node);
  return element && element.closest('a[href]');
}

function isOpenable(link) {
  return Boolean(link) && OPENABLE_SCHEMES.has(link.protocol);
}

let hoveredAddress = ''; // of the link under the pointer that could be opened

function hover(link, isOpening) {
  const address = isOpenable(link) ? link.href : '';
  showOpening(address !== '' && isOpening);
  if (address === hoveredAddress) return;
  hoveredAddress = address;
  post('plimHover', address);
}

// On the page's own element: nothing of it may get into a note.
function showOpening(isOpening) {
  document.documentElement.classList.toggle('opens-links', isOpening);
}

function asksToOpen(event) {
  return event.ctrlKey || event.metaKey;
}

// A key that is let go still counts itself among the keys held.
function onOpeningKey(event) {
  const isLetGo = event.type === 'keyup' && (event.key === 'Control' || event.key === 'Meta');
  showOpening(hoveredAddress !== '' && asksToOpen(event) && !isLetGo);
}

function onLinkClick(event) {
  const link = linkOf(event.target);
  if (!link) return;
  event.preventDefault();
  const isOne = event.button === 0 && event.detail <= 1 && document.getSelection().isCollapsed; // no double click, no drag
  if (isOne && asksToOpen(event) && isOpenable(link)) post('plimLink', link.href);
}

// What only stands in the field to begin with is no address.
const UNFINISHED = /^((https?:)?\/*|mailto:)(…|\.{3})?$/i;
const SCHEME = /^[a-z][a-z0-9+.-]*:/i;
const HOST_AND_PORT = /^(?!tel:|sms:)[^\s/?#@:]+:\d{1,5}(?=[/?#]|$)/i;

// The address that is meant by what was typed; null when there is none, or none to be linked to.
function addressFrom(typed) {
  const text = typed.replace(/^[ \t\r\n\u00a0]+|[ \t\r\n\u00a0]+$/g, '');
  if (UNFINISHED.test(text) || !isHarmlessLink(text)) return null;
  if (SCHEME.test(text) && !HOST_AND_PORT.test(text)) return text;
  if (/^[^/@]+@[^/]+$/.test(text)) return 'mailto:' + text;
  return 'https://' + text.replace(/^\/+/, '');
}

function createLink(address) {
  const range = currentRange();
  const link = range && range.collapsed && linkOf(range.startContainer);
  if (link) {
    changeAddress(link, address);
    return;
  }
  document.execCommand('createLink', false, address);
  dropSpareBreak(blockAt(document.getSelection().anchorNode, LINE_BLOCKS));
  if (currentRange()) document.getSelection().collapseToEnd(); // typing goes on behind it
}

function changeAddress(link, address) {
  const isItsText = link.textContent === link.getAttribute('href');
  link.setAttribute('href', address);
  if (!isItsText) return;
  link.textContent = address;
  placeCaretAt(link.firstChild, address.length);
}

// As written, of the link that holds the caret or the selection, or else the first one in it. Where
// the selection was last seen counts: whoever asks may have the keyboard by now.
function linkAtCaret() {
  saveSelection();
  dropStaleRange();
  if (!savedRange) return '';
  const within = savedRange.collapsed ? [] : [...savedRange.cloneContents().querySelectorAll('a[href]')];
  const link = linkOf(savedRange.commonAncestorContainer) || within.find(part => !isHollow(part));
  return link ? link.getAttribute('href') : '';
}
