// ---- Listeners -------------------------------------------------------------------------------

let wasRangeReplaced = false; // the edit under way replaces a selection, which may span blocks

const observer = new MutationObserver(notifyDebounced);

function attachRegions() {
  observer.disconnect();
  for (const region of [titleEl, bodyEl]) {
    observer.observe(region, { childList: true, attributes: true, characterData: true, subtree: true });
    region.addEventListener('input', onInput);
    region.addEventListener('compositionend', onCompositionEnd);
    region.addEventListener('paste', handlePaste);
    region.addEventListener('drop', handleDrop);
    region.addEventListener('keyup', () => reportSoon(REPORT_DEBOUNCE));
    region.addEventListener('mouseup', () => reportSoon(REPORT_DEBOUNCE));
  }
  titleEl.addEventListener('keydown', onTitleKey);
  bodyEl.addEventListener('keydown', onBodyKey);
  bodyEl.addEventListener('beforeinput', noteReplacedRange);
  bodyEl.addEventListener('beforeinput', onBeforeInput);
  bodyEl.addEventListener('mousedown', event => {
    if (event.target.classList.contains('chk')) event.preventDefault();
  });
  bodyEl.addEventListener('click', onBoxClick);
}

function noteReplacedRange() {
  const range = currentRange();
  wasRangeReplaced = Boolean(range && !range.collapsed);
}

function onInput(event) {
  const isPlainTyping = event.inputType === 'insertText' && !wasRangeReplaced;
  if (event.currentTarget === bodyEl && !event.isComposing && !isPlainTyping) tidyBody();
  notifyThrottled();
}

function onCompositionEnd() {
  setTimeout(() => {
    tidyBody();
    notifyChange();
  }, COMPOSITION_DELAY);
}

function onBoxClick(event) {
  if (!event.target.classList.contains('chk')) return;
  setTicked(event.target, !event.target.classList.contains('checked'));
  notifyChange();
}

document.addEventListener('selectionchange', () => {
  saveSelection();
  reportSoon(REPORT_DEBOUNCE);
});
document.addEventListener('dragstart', () => { isOwnDrag = true; });
document.addEventListener('dragend', () => { isOwnDrag = false; });
document.addEventListener('dragover', event => {
  if (event.dataTransfer.types.includes('Files')) event.preventDefault();
});
document.addEventListener('drop', event => {
  if (!regionOf(event.target)) event.preventDefault();
});
window.addEventListener('blur', notifyPending);

// A line is a paragraph: the engine's own choice, a div, is what cleaning unwraps.
document.execCommand('defaultParagraphSeparator', false, 'p');
document.execCommand('styleWithCSS', false, false);
attachRegions();
