// ---- Listeners -------------------------------------------------------------------------------

let isPlainTyping = false; // the edit under way adds a letter at the caret: nothing to tidy after it

const observer = new MutationObserver(records => {
  heedLongWordsOf(records);
  notifyDebounced();
});

function attachRegions() {
  for (const region of [titleEl, bodyEl]) {
    observer.observe(region, { childList: true, attributes: true, characterData: true, subtree: true });
    region.addEventListener('beforeinput', onBeforeInput);
    region.addEventListener('input', onInput);
    region.addEventListener('keydown', onHistoryKey);
    region.addEventListener('compositionend', onCompositionEnd);
    region.addEventListener('paste', handlePaste);
    region.addEventListener('drop', handleDrop);
    region.addEventListener('keyup', () => reportSoon(REPORT_DEBOUNCE));
    region.addEventListener('mouseup', () => reportSoon(REPORT_DEBOUNCE));
  }
  titleEl.addEventListener('keydown', onTitleKey);
  titleEl.addEventListener('focus', onTitleFocus);
  bodyEl.addEventListener('keydown', onBodyKey);
  bodyEl.addEventListener('mousedown', event => {
    if (event.target.classList.contains('chk')) event.preventDefault();
  });
  bodyEl.addEventListener('click', onBoxClick);
}

// Runs before the engine edits by itself.
function onBeforeInput(event) {
  const isInBody = event.currentTarget === bodyEl;
  const range = currentRange();
  const isRange = Boolean(range && !range.collapsed);
  isPlainTyping = event.inputType === 'insertText' && !isRange;
  if (onHistoryInput(event)) return;
  if (isInBody && !event.isComposing) settleCaret();
  if (isInBody && event.inputType === 'insertText') leaveNextLineOut();
  const isTyping = event.inputType === 'insertText' || event.inputType === 'insertCompositionText';
  const isDeleting = event.inputType.startsWith('delete') && !isRange;
  if (event.isComposing && stepKind === 'typing') return; // one composed text is never parted
  if (event.inputType === 'insertFromDrop' && isOwnDrag) return; // a step began where it was taken from
  if (isDeleting && isInBody) {
    if (!event.isComposing) deleteAtCaret(event);
    return;
  }
  beginStep(isTyping && !isRange ? 'typing' : isDeleting ? 'deleting' : null);
  if (isTyping) stepKind = 'typing';
}

function onInput(event) {
  if (event.currentTarget === bodyEl && !event.isComposing && (!isPlainTyping || isUntidyAtCaret())) tidyBody();
  if (event.currentTarget === titleEl && !event.isComposing && titleEl.querySelector(STYLED)) keepingSelection(tidyTitle);
  isPlainTyping = false;
  markStepEnd();
  notifyThrottled();
}

// Who comes into the page with Tab comes to its first region, and the engine would put the caret at
// the very start of the title: writing goes on where it was left.
let isPointerDown = false;

function onTitleFocus(event) {
  if (isMovingFocus || isPointerDown || event.relatedTarget) return;
  dropStaleRange();
  if (!savedRange || savedEl === titleEl || titleEl.contains(savedRange.startContainer)) return;
  const range = savedRange.cloneRange();
  const element = savedEl;
  setTimeout(() => { // the engine places its caret after this
    if (document.activeElement !== titleEl || !range.startContainer.isConnected) return;
    savedRange = range;
    savedEl = element;
    restoreSelection();
  });
}

function onCompositionEnd() {
  setTimeout(() => {
    tidyBody();
    notifyChange();
  }, COMPOSITION_DELAY);
}

function onBoxClick(event) {
  if (!event.target.classList.contains('chk')) return;
  beginStep();
  setTicked(event.target, !event.target.classList.contains('checked'));
  notifyChange();
}

document.addEventListener('selectionchange', () => {
  saveSelection();
  reportSoon(REPORT_DEBOUNCE);
});
document.addEventListener('mousedown', () => { isPointerDown = true; }, true);
for (const end of ['mouseup', 'dragend']) document.addEventListener(end, () => { isPointerDown = false; }, true);
document.addEventListener('dragstart', event => { isOwnDrag = event.isTrusted; });
document.addEventListener('dragend', () => { isOwnDrag = false; });
document.addEventListener('dragover', handleDragOver);
document.addEventListener('drop', event => {
  if (!regionOf(event.target)) event.preventDefault();
});
document.addEventListener('click', onLinkClick, true);
document.addEventListener('auxclick', onLinkClick, true);
for (const type of ['mouseover', 'mousemove']) { // the former also when the text moves under the pointer
  document.addEventListener(type, event => hover(linkOf(event.target), asksToOpen(event)), true);
}
document.documentElement.addEventListener('mouseleave', () => hover(null, false));
for (const type of ['keydown', 'keyup']) document.addEventListener(type, onOpeningKey, true);
document.addEventListener('wheel', event => {
  if (event.ctrlKey) event.preventDefault(); // the text size is the note's own
}, { passive: false });
window.addEventListener('blur', () => {
  showOpening(false);
  notifyPending();
});

// A line is a paragraph: the engine's own choice, a div, is what cleaning unwraps.
document.execCommand('defaultParagraphSeparator', false, 'p');
document.execCommand('styleWithCSS', false, false);
attachRegions();
