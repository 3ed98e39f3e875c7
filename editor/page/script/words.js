// ---- Long words ------------------------------------------------------------------------------
//
// A word that is longer than its line is parted anywhere, and with kerned letters that costs the
// engine time with the square of the word's length: a second for each key in one of 100,000 letters.
// A note with such a word goes without kerning.

const LONG_WORD = 2000; // letters without a blank

// Looks from the end of where a long word would be back to the last blank, and goes on from there:
// most of a text is not looked at, and no letter of it more than twice.
function hasLongWord(text) {
  for (let begin = 0; begin + LONG_WORD <= text.length;) {
    let i = begin + LONG_WORD - 1;
    while (i >= begin && !isBlankUnit(text.charCodeAt(i))) i -= 1;
    if (i < begin) return true;
    begin = i + 1;
  }
  return false;
}

function isBlankUnit(unit) {
  return unit <= 0x20 || unit === 0xa0;
}

function holdsLongWord(node) {
  const texts = document.createTreeWalker(node, NodeFilter.SHOW_TEXT);
  for (let text = node.nodeType === Node.TEXT_NODE ? node : texts.nextNode(); text; text = texts.nextNode()) {
    if (text.length >= LONG_WORD && hasLongWord(text.data)) return true;
  }
  return false;
}

function hasLongWords() {
  return document.documentElement.classList.contains('has-long-words');
}

function setLongWords(isSet) {
  document.documentElement.classList.toggle('has-long-words', isSet);
}

// A word may grow long; that it is gone is seen when the note is shown again.
function heedLongWordsOf(records) {
  if (hasLongWords()) return;
  const isLong = records.some(record => (record.type === 'characterData' ? holdsLongWord(record.target)
    : [...record.addedNodes].some(holdsLongWord)));
  if (isLong) setLongWords(true);
}
