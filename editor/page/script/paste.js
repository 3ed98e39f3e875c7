// ---- Paste and drop --------------------------------------------------------------------------

const PASTED_MARKUP = /<(p|h1|h2|h3|ul|ol|li|b|strong|i|em|u|a|hr|img|br)[\s>]/i;

function handlePaste(event) {
  if (!event.clipboardData) return;
  takeOver(event, event.clipboardData, event.currentTarget);
}

function takeOver(event, data, region) {
  const html = data.getData('text/html');
  const plain = data.getData('text/plain');
  beginStep();
  if (region === titleEl) {
    event.preventDefault();
    const text = (plain || html.replace(/<[^>]*>/g, '')).replace(/\n/g, ' ').trim();
    if (text) document.execCommand('insertText', false, text);
    notifyChange();
    return;
  }
  const clean = isBlankText(html) ? '' : sanitizeHTML(html);
  if (!isBlankText(clean)) {
    event.preventDefault();
    if (!PASTED_MARKUP.test(clean) && plain) {
      insertLines(plain, true);
    } else {
      document.execCommand('insertHTML', false, sanitizeLines(html));
    }
  } else if (plain) {
    event.preventDefault();
    insertLines(plain, false);
  } else {
    return;
  }
  finishEdit();
}

function insertLines(plain, alwaysAsParagraphs) {
  const lines = plain.split(/\r?\n/);
  if (lines.length === 1 && !alwaysAsParagraphs) {
    document.execCommand('insertText', false, plain);
    return;
  }
  const html = lines.map(line => (line === '' ? '<p><br></p>' : '<p>' + escapeHTML(line) + '</p>')).join('');
  if (html) document.execCommand('insertHTML', false, html); else document.execCommand('insertText', false, plain);
}

let isOwnDrag = false; // the selection of this page is being dragged within it

function handleDrop(event) {
  const region = event.currentTarget;
  if (isOwnDrag && region === bodyEl) return; // the engine moves it, and the input event tidies
  event.preventDefault();
  if (!event.dataTransfer || event.dataTransfer.files.length) return;
  const range = document.caretRangeFromPoint(event.clientX, event.clientY);
  if (range && region.contains(range.startContainer)) {
    region.focus();
    select(range);
  }
  takeOver(event, event.dataTransfer, region);
}
