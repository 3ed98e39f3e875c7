// ---- Paste and drop --------------------------------------------------------------------------

const PASTED_MARKUP = /<(p|h1|h2|h3|ul|ol|li|b|strong|i|em|u|a|hr|img|br)[\s>]/i;

function handlePaste(event) {
  if (!event.clipboardData) return;
  takeOver(event, event.clipboardData, event.currentTarget);
}

function takeOver(event, data, region) {
  const html = data.getData('text/html');
  const plain = data.getData('text/plain');
  if (hasLongWord(plain || html)) setLongWords(true);
  if (region === titleEl) {
    event.preventDefault();
    const text = (plain || html.replace(/<[^>]*>/g, '')).replace(/\n/g, ' ').trim();
    beginStep();
    if (text) document.execCommand('insertText', false, text);
    notifyChange();
    return;
  }
  const pictures = picturesOf(data);
  if (pictures.length && isPictureAlone(html, plain)) {
    event.preventDefault();
    insertPictures(pictures);
    return;
  }
  const clean = isBlankText(html) ? '' : sanitizeHTML(html);
  const isMarkup = !isBlankText(clean) && (PASTED_MARKUP.test(clean) || !plain);
  if (!isMarkup && !plain) return;
  event.preventDefault();
  beginStep();
  if (isMarkup) sendingPictures(() => insertMarkup(sanitizeLines(html))); else insertLines(plain);
  finishEdit();
}

function insertLines(plain) {
  const lines = plain.split(/\r?\n/);
  if (lines.length === 1) { // as text, or the blanks at its ends would fall away
    document.execCommand('insertText', false, plain);
    return;
  }
  const html = lines.map(line => (line === '' ? '<p><br></p>' : '<p>' + escapeHTML(line) + '</p>')).join('');
  insertMarkup(html);
}

// Cleaned markup, at the selection.
function insertMarkup(html) {
  const range = currentRange();
  const item = range && blockAt(range.startContainer, LIST_BLOCKS);
  const lines = isChecklistItem(item) ? linesOf(parseInert(html)) : [];
  if (lines.length) {
    insertItems(lines);
    return;
  }
  // Cleaning has taken the boxes of pasted checklists; tidying gives each item one by its tick.
  document.execCommand('insertHTML', false, html);
  dropSpareBreak(blockAt(document.getSelection().anchorNode, LINE_BLOCKS));
}

// The lines of the markup, each as its inline nodes and whether it was ticked.
function linesOf(root) {
  const lines = [];
  let isOpen = false;
  const walk = (parent, isTicked) => {
    for (const node of [...parent.childNodes]) {
      const isElement = node.nodeType === Node.ELEMENT_NODE;
      if (isElement && (node.matches(BLOCKS) || node.querySelector(BLOCKS))) {
        isOpen = false;
        walk(node, node.matches('li.checked'));
        isOpen = false;
      } else if (isOpen || isElement || !isBlankText(node.nodeValue)) {
        if (!isOpen) lines.push({ nodes: [], isTicked });
        isOpen = node.nodeName !== 'BR';
        if (isOpen) lines[lines.length - 1].nodes.push(node);
      }
    }
  };
  walk(root, false);
  return lines;
}

// The engine would put paragraphs between the items and leave what follows without a box. The
// first line goes on with the item at the caret, every other one becomes an item.
function insertItems(lines) {
  if (!currentRange().collapsed) document.execCommand('delete');
  const item = blockAt(currentRange().startContainer, LIST_BLOCKS);
  if (!isChecklistItem(item)) {
    document.execCommand('insertHTML', false, lines.map(line => renderedParagraph(line.nodes)).join(''));
    return;
  }
  const rest = cutToEnd(item);
  dropEmptyNodes(rest);
  if (item.lastChild && item.lastChild.nodeName === 'BR') item.lastChild.remove();
  item.append(...lines[0].nodes);
  ensureTypingTarget(item);
  let last = item;
  for (const line of lines.slice(1)) {
    const next = makeItem(...line.nodes);
    setTicked(boxOf(next), line.isTicked);
    last.after(next);
    last = next;
  }
  const isSpare = rest.childNodes.length === 1 && rest.firstChild.nodeName === 'BR';
  const mark = document.createTextNode('');
  last.append(mark);
  if (!isSpare) last.append(contentOf(rest));
  if (mark.previousSibling.nodeName === 'BR' && mark.nextSibling) mark.previousSibling.remove();
  placeCaretAtMark(mark);
}

function renderedParagraph(nodes) {
  const paragraph = inertDocument.createElement('p');
  paragraph.append(...nodes);
  if (isHollow(paragraph)) paragraph.append(inertDocument.createElement('br'));
  return paragraph.outerHTML;
}

let isOwnDrag = false; // the user drags the selection of this page within it: that is clean already

function handleDrop(event) {
  const region = event.currentTarget;
  if (isOwnDrag && region === bodyEl) return; // the engine moves it, and the input event tidies
  event.preventDefault();
  if (!event.dataTransfer) return;
  const pictures = region === bodyEl ? picturesOf(event.dataTransfer) : [];
  if (event.dataTransfer.files.length && !pictures.length) return;
  const range = document.caretRangeFromPoint(event.clientX, event.clientY);
  if (range && region.contains(range.startContainer)) {
    moveFocus(region);
    select(range);
  }
  if (pictures.length) insertPictures(pictures); else takeOver(event, event.dataTransfer, region);
}

// Files other than pictures are refused, and so is any file over the title: with the cursor that
// says so, before it is let go.
function handleDragOver(event) {
  if (!event.dataTransfer.types.includes('Files')) return;
  event.preventDefault();
  const isOverBody = bodyEl.contains(event.target);
  if (isOverBody && isOwnDrag) return; // the engine moves it
  event.dataTransfer.dropEffect = isOverBody && bringsPictures(event.dataTransfer) ? 'copy' : 'none';
}
