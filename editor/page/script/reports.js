// ---- Reports to the host ---------------------------------------------------------------------

function composeHTML() {
  let title = titleEl.innerHTML;
  if (/^\s*<br\s*\/?>\s*$/i.test(title)) title = '';
  title = title.trim().replace(/<div\b[^>]*>/gi, '').replace(/<\/div>/gi, '');
  return '<h1>' + (title || '<br>') + '</h1>' + bodyEl.innerHTML;
}

function notifyChange() {
  if (holdTimer === null) sendChange(); else isReportHeld = true;
}

// The regions hold the note that they are said to hold. Else, after whatever went wrong, what they
// hold is another's, and nobody may take it for this one's.
function isShown() {
  return shownNoteID === currentNoteID;
}

function answerAll() {
  lastAnswer = isShown() ? composeHTML() : null;
  return lastAnswer;
}

// null when nothing was written since the last answer: a long text is not told again.
function answerChanged() {
  const known = lastAnswer;
  return answerAll() === known ? null : lastAnswer;
}

function sendChange() {
  isReportHeld = false;
  if (isShown()) post('plim', JSON.stringify({ id: currentNoteID, html: composeHTML() }));
}

function notifyThrottled() {
  const now = performance.now();
  if (now - throttleClock < INPUT_THROTTLE) return;
  throttleClock = now;
  notifyChange();
}

function cancelDebounce() {
  clearTimeout(debounceTimer);
  debounceTimer = null;
  isReportHeld = false;
}

function notifyDebounced() {
  cancelDebounce();
  debounceTimer = setTimeout(() => {
    debounceTimer = null;
    notifyChange();
  }, CHANGE_DEBOUNCE);
}

// What waits for its timer is sent now: the next key may belong to another editor of this note.
function notifyPending() {
  if (debounceTimer === null && !isReportHeld) return;
  cancelDebounce();
  sendChange();
}

// Reports wait for what the host is about to answer, but not for long, whether it does or not.
function holdReports() {
  if (holdTimer === null) holdTimer = setTimeout(releaseReports, REPORT_PATIENCE);
}

function releaseReports() {
  clearTimeout(holdTimer);
  holdTimer = null;
  if (isReportHeld) sendChange();
}

function reportFormatState() {
  try {
    post('plimState', JSON.stringify(formatState()));
  } catch (error) { /* the next selection change reports again */ }
}

function formatState() {
  const on = command => document.queryCommandState(command);
  const state = {
    bold: on('bold'), italic: on('italic'), underline: on('underline'), strike: on('strikeThrough'),
    bullet: on('insertUnorderedList'), ordered: on('insertOrderedList'),
    h1: false, h2: false, h3: false, p: false, link: false, checklist: false,
  };
  const range = currentRange();
  const anchor = range && elementOf(document.getSelection().anchorNode);
  for (let element = anchor; element && element !== titleEl && element !== bodyEl; element = element.parentElement) {
    if (['H1', 'H2', 'H3', 'P'].includes(element.tagName)) state[element.tagName.toLowerCase()] = true;
    if (element.closest('a')) state.link = true;
    if (element.tagName === 'LI' && element.parentElement.classList.contains('checklist')) state.checklist = true;
  }
  if (anchor && anchor.closest('a')) state.link = true;
  if (savedEl === titleEl) state.h1 = true;
  return state;
}

function reportSoon(delay) {
  if (delay === REPORT_AFTER_COMMAND) {
    setTimeout(reportFormatState, delay);
    return;
  }
  clearTimeout(reportTimer);
  reportTimer = setTimeout(reportFormatState, delay);
}
