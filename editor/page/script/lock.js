// ---- Lock: outside HTML is made harmless before it enters the document ----------------------------

// Elements that are dropped with all they hold: what they hold is not a note's text.
const DROPPED = new Set(['script', 'style', 'template', 'iframe', 'frame', 'frameset', 'object', 'embed',
  'applet', 'meta', 'base', 'link', 'title', 'head', 'noscript', 'noembed', 'noframes', 'audio', 'video',
  'source', 'track', 'portal', 'param', 'canvas', 'bgsound', 'basefont', 'map', 'area']);
// Elements of forms and the like: what they hold is text and stays.
const OPENED = new Set(['form', 'button', 'textarea', 'select', 'option', 'optgroup', 'datalist', 'output',
  'fieldset', 'legend', 'label', 'xmp', 'plaintext', 'listing', 'slot', 'dialog', 'marquee', 'details', 'summary']);
// Attributes that run, send, name or navigate. id and name would let a note stand in for the
// page's own regions and for members of document.
const DROPPED_ATTRIBUTES = new Set(['srcdoc', 'formaction', 'action', 'ping', 'background', 'manifest',
  'http-equiv', 'autofocus', 'is', 'nonce', 'id', 'name', 'slot', 'shadowroot', 'target', 'popover',
  'dynsrc', 'lowsrc', 'srcset', 'accesskey', 'tabindex']);
const LINK_SCHEMES_REFUSED = new Set(['javascript:', 'vbscript:', 'data:', 'blob:', 'filesystem:', 'about:',
  'view-source:', 'chrome:', 'chrome-devtools:', 'devtools:', 'qrc:', 'file:']);

function schemeOf(address) {
  try {
    return new URL(address, 'https://note.invalid/').protocol;
  } catch (error) {
    return '';
  }
}

function isHarmlessLink(address) {
  return !LINK_SCHEMES_REFUSED.has(schemeOf(address));
}

function isHarmlessPicture(address) {
  const scheme = schemeOf(address);
  if (scheme === 'data:') return /^\s*data:image\//i.test(address);
  return scheme === 'file:' || scheme === 'blob:' || isHarmlessLink(address);
}

function isHarmlessAttribute(element, attribute) {
  const name = attribute.name.toLowerCase();
  if (name.startsWith('on') || name.includes(':') || DROPPED_ATTRIBUTES.has(name)) return false;
  if (name === 'href') return element.localName === 'a' && isHarmlessLink(attribute.value);
  if (name === 'src') return element.localName === 'img' && isHarmlessPicture(attribute.value);
  return true;
}

// Works on a parsed, detached tree; the caller moves its nodes (and never parses them again), so
// that no second reading of the markup can bring anything back.
function makeHarmless(root) {
  for (const element of [...root.querySelectorAll('*')]) {
    if (!root.contains(element)) continue; // went with a dropped ancestor
    const name = element.localName.toLowerCase();
    const isForeign = element.namespaceURI !== 'http://www.w3.org/1999/xhtml';
    const isOldBox = name === 'input' && element.type === 'checkbox' && element.closest('ul.checklist');
    if (isForeign || DROPPED.has(name) || (name === 'input' && !isOldBox)) {
      element.remove();
      continue;
    }
    for (const attribute of [...element.attributes]) {
      if (!isHarmlessAttribute(element, attribute)) element.removeAttributeNode(attribute);
    }
    if (OPENED.has(name)) unwrap(element);
  }
  return root;
}
