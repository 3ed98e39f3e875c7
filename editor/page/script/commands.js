// ---- Content and commands, called by the host ------------------------------------------------------

const BLOCK_COMMANDS = ['formatBlock', 'insertUnorderedList', 'insertOrderedList'];
const LEADING_HEADING = /^\s*<h1[^>]*>([\s\S]*?)<\/h1>/i;

function setContent(html) {
  const match = html.match(LEADING_HEADING);
  const title = match ? match[1].replace(/<div\b[^>]*>/gi, '').replace(/<\/div>/gi, '') : '';
  const body = match ? html.slice(match[0].length) : html;
  const scrollTop = bodyEl.dataset.noteId === String(currentNoteID) ? bodyEl.scrollTop : 0;
  renewRegions();
  fill(titleEl, title);
  fill(bodyEl, body);
  sanitizeCurrentBody();
  normalizeChecklists();
  bodyEl.scrollTop = scrollTop;
}

function fill(region, html) {
  region.append(...makeHarmless(parseInert(html)).childNodes);
}

// The engine keeps one undo history for the page, and undoing a step of the note shown before
// would put its nodes back into this one. A step only works on nodes that are still part of an
// editable region, so each content gets regions of its own.
function renewRegions() {
  const hadFocus = regionOf(document.activeElement);
  titleEl.replaceWith(titleEl = titleEl.cloneNode(false));
  bodyEl.replaceWith(bodyEl = bodyEl.cloneNode(false));
  bodyEl.dataset.noteId = String(currentNoteID);
  savedRange = null;
  savedEl = bodyEl;
  attachRegions();
  if (hadFocus) bodyEl.focus();
}

function runCommand(name, value) {
  if (name === 'createLink' && !isHarmlessLink(value || '')) return;
  if (savedEl === titleEl && BLOCK_COMMANDS.includes(name)) placeCaretAtStart(bodyEl); else restoreSelection();
  sanitizeCurrentBody();
  document.execCommand(name, false, value === undefined ? null : value);
  tidyBody();
  saveSelection();
  notifyChange();
  reportSoon(REPORT_AFTER_COMMAND);
}

function insertHTML(html) {
  if (savedEl === titleEl) placeCaretAtStart(bodyEl); else restoreSelection();
  const markup = /<img/i.test(html) ? html.replace(/\s*style\s*=\s*("[^"]*"|'[^']*')/gi, '') : html;
  document.execCommand('insertHTML', false, makeHarmless(parseInert(markup)).innerHTML);
  finishEdit();
  reportSoon(REPORT_AFTER_COMMAND);
}

function isTitleBlank() {
  return isBlankText(titleEl.textContent) || titleEl.innerHTML.replace(/<br\s*\/?>/gi, '').trim() === '';
}

function focusBodyAtEnd() {
  setTimeout(() => {
    try {
      placeCaretAtEnd(isTitleBlank() && isBlankText(bodyEl.textContent) ? titleEl : bodyEl);
    } catch (error) { /* the caret stays where it is */ }
  }, FOCUS_DELAY);
}

Object.assign(window, {
  setCurrentID(id) { currentNoteID = id; },
  cancelDebounce,
  getComposedHTML: composeHTML,
  focusBodyAtEnd,
  setContent,
  setFontSize(px) { document.documentElement.style.setProperty('--base', px + 'px'); },
  flushNow: notifyChange,
  reportFormatState,
  toggleChecklist,
  runCommand,
  insertHTML,
});
