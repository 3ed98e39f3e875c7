// ---- Content and commands, called by the host ------------------------------------------------------

const BLOCK_COMMANDS = ['formatBlock', 'insertUnorderedList', 'insertOrderedList'];
let shownNoteID = null; // whose content the regions hold; of nobody while it is being put there
const LEADING_HEADING = /^\s*<h1[^>]*>([\s\S]*?)<\/h1>/i;

// What was typed since the host last read the page goes out under the id it was typed into.
function setCurrentID(id) {
  if (id !== currentNoteID) notifyPending();
  currentNoteID = id;
}

function setContent(html) {
  const match = html.match(LEADING_HEADING);
  const title = match ? match[1].replace(/<div\b[^>]*>/gi, '').replace(/<\/div>/gi, '') : '';
  const body = match ? html.slice(match[0].length) : html;
  const isRefresh = shownNoteID === currentNoteID;
  shownNoteID = undefined;
  const { scrollTop } = bodyEl;
  savedRange = null;
  savedEl = bodyEl;
  lastAnswer = null;
  hover(null, false);
  fill(titleEl, title);
  fill(bodyEl, body);
  setLongWords([titleEl, bodyEl].some(holdsLongWord));
  sanitizeCurrentBody();
  normalizeChecklists();
  forgetHistory();
  shownNoteID = currentNoteID;
  bodyEl.scrollTop = isRefresh ? scrollTop : 0;
}

function fill(region, html) {
  region.replaceChildren(contentOf(makeHarmless(parseInert(html))));
}

// While somebody writes here the page's own selection is newer than any news of it: a letter typed a
// moment ago would end up behind those that follow.
function followWriting() {
  if (document.hasFocus()) saveSelection();
}

function runCommand(name, value) {
  const address = name === 'createLink' ? addressFrom(value || '') : null;
  if (name === 'createLink' && address === null) return;
  followWriting();
  if (savedEl === titleEl && BLOCK_COMMANDS.includes(name)) placeCaretAtStart(bodyEl); else restoreSelection();
  if (name === 'undo' || name === 'redo') {
    runHistory(name === 'undo');
    return;
  }
  beginStep();
  sanitizeCurrentBody();
  if (BLOCK_COMMANDS.includes(name)) runBlockCommand(name, value);
  else if (address !== null) createLink(address);
  else document.execCommand(name, false, value === undefined ? null : value);
  tidyBody();
  saveSelection();
  notifyChange();
  reportSoon(REPORT_AFTER_COMMAND);
}

function runBlockCommand(name, value) {
  if (name === 'formatBlock') formatBlock(value); else toggleList(name === 'insertOrderedList' ? 'ol' : 'ul');
}

function insertHTML(html) {
  followWriting();
  if (savedEl === titleEl) placeCaretAtStart(bodyEl); else restoreSelection();
  beginStep();
  const markup = /<img/i.test(html) ? html.replace(/\s*style\s*=\s*("[^"]*"|'[^']*')/gi, '') : html;
  settleCaret();
  sendingPictures(() => insertIntoBody(makeHarmless(parseInert(markup)).innerHTML));
  finishEdit();
  reportSoon(REPORT_AFTER_COMMAND);
}

// A divider between the items of a checklist: the engine would leave the text below it without a
// box. The list is parted instead.
function insertIntoBody(html) {
  const range = currentRange();
  const item = range && blockAt(range.startContainer, LIST_BLOCKS);
  if (html !== '<hr>' || !isChecklistItem(item) || item.parentElement.parentElement !== bodyEl) {
    document.execCommand('insertHTML', false, html);
    return;
  }
  if (!range.collapsed) {
    document.execCommand('delete');
    insertIntoBody(html);
    return;
  }
  const list = item.parentElement;
  const rest = cutToEnd(item);
  dropEmptyNodes(rest);
  const following = takeItemsBelow(item);
  if (rest.hasChildNodes()) following.prepend(makeItem(contentOf(rest)));
  const divider = document.createElement('hr');
  list.after(divider);
  ensureTypingTarget(item);
  if (following.hasChildNodes()) {
    divider.after(following);
    placeCaretAfterBox(following.querySelector('li'));
    return;
  }
  const paragraph = document.createElement('p');
  paragraph.append(document.createElement('br'));
  divider.after(paragraph);
  placeCaretAtStart(paragraph);
}

function isTitleBlank() {
  return isBlankText(titleEl.textContent) || titleEl.innerHTML.replace(/<br\s*\/?>/gi, '').trim() === '';
}

// At once, so that what is typed right now finds its place, and once more when the window has had
// the time to give the page the keyboard.
function focusBodyAtEnd() {
  placeFirstCaret();
  setTimeout(() => {
    if (!regionOf(document.activeElement) || !regionOf(document.getSelection().anchorNode)) placeFirstCaret();
  }, FOCUS_DELAY);
}

// Without the engine's own scrolling to the caret: nobody has moved it yet, the note is to be read from
// its top, and a page that comes hidden has no size yet, so that every place is out of its view.
function placeFirstCaret() {
  try {
    const region = isTitleBlank() && isBlankText(bodyEl.textContent) ? titleEl : bodyEl;
    moveFocus(region, { preventScroll: true });
    if (region === titleEl) placeCaretAtEnd(titleEl); else placeCaretAtTextEnd();
  } catch (error) { /* the caret stays where it is */ }
}

Object.assign(window, {
  setCurrentID,
  cancelDebounce,
  getComposedHTML: answerAll,
  getChangedHTML: answerChanged,
  focusBodyAtEnd,
  setContent,
  setFontSize(px) { document.documentElement.style.setProperty('--base', px + 'px'); },
  flushNow: sendChange,
  reportFormatState,
  toggleChecklist,
  runCommand,
  linkAtCaret,
  insertHTML,
  pictureStored,
});
