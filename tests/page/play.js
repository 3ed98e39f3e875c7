// Plays with the page at random, as a user would with keys and buttons, and looks whether what it
// made can be read again. play(seed) returns null, or what went wrong and how to get there.
window.play = (seed, stepCount) => {
  let state = seed >>> 0;
  const random = () => { // mulberry32
    state = (state + 0x6D2B79F5) >>> 0;
    let t = state;
    t = Math.imul(t ^ (t >>> 15), t | 1);
    t ^= t + Math.imul(t ^ (t >>> 7), t | 61);
    return ((t ^ (t >>> 14)) >>> 0) / 4294967296;
  };
  const below = n => Math.floor(random() * n);
  const pick = list => list[below(list.length)];

  // Of a copy, which is laid out anew: after some edits the engine draws one space of two until it lays
  // the paragraph out again, and reads so, too.
  function shownText() {
    const copy = bodyEl.cloneNode(true);
    bodyEl.after(copy);
    const text = copy.innerText;
    copy.remove();
    return text;
  }
  // What a reader sees: the lines with what they are, the text, the ticks and the links.
  const view = () => {
    const kind = element => {
      const lists = [];
      for (let e = element; e !== bodyEl; e = e.parentElement) {
        if (e.matches('ul.checklist')) lists.push('check'); else if (e.matches('ul, ol')) lists.push(e.localName);
      }
      return (element.localName + ' ' + lists.join('<')).trim();
    };
    const own = element => {
      const copy = element.cloneNode(true);
      for (const list of copy.querySelectorAll('ul, ol')) list.remove();
      return copy.textContent;
    };
    return JSON.stringify({
      title: titleEl.textContent.trim(),
      text: shownText().replace(/\u00a0/g, ' '),
      blocks: [...bodyEl.querySelectorAll('p, h1, h2, h3, li, hr, img')].map(e => kind(e) + ': ' + own(e)),
      boxes: [...bodyEl.querySelectorAll('li')].map(li => (boxOf(li) ? li.className + '/' + boxOf(li).className : '-')),
      links: [...bodyEl.querySelectorAll('a')].map(a => a.getAttribute('href') + ' ' + a.textContent),
      formats: ['b', 'i', 'u', 'strike, s'].map(tag => [...bodyEl.querySelectorAll(tag)].map(e => e.textContent).join('')),
    });
  };
  const letters = () => [...(titleEl.textContent + bodyEl.textContent).replace(/\s/g, '')].sort().join('');

  const faults = () => {
    const found = [];
    const wrong = (selector, what) => { if (bodyEl.querySelector(selector)) found.push(what + ': ' + selector); };
    wrong('div, font, [style], [dir], span:not(.chk)', 'left over');
    wrong('p p, p h1, p h2, p h3, p ul, p ol, p hr, h1 h2, h2 h1, h2 h3, h3 h2, h1 ul, h2 ul, h3 ul', 'nested');
    wrong('ul > p, ol > p, ul > h1, ol > h2, li > li, ul.checklist > hr', 'misplaced');
    for (const box of bodyEl.querySelectorAll('.chk')) {
      const item = box.parentElement;
      if (!item.matches('ul.checklist > li') || item.firstChild !== box) found.push('stray box');
      if (box.classList.contains('checked') !== item.classList.contains('checked')) found.push('half tick');
      if (item.querySelectorAll(':scope > .chk').length > 1) found.push('two boxes');
    }
    for (const item of bodyEl.querySelectorAll('ul.checklist > li')) if (!boxOf(item) && !plainItems.has(item)) found.push('item without its box');
    for (const item of bodyEl.querySelectorAll('li.checked')) if (!boxOf(item)) found.push('tick without a box');
    return found.join(', ');
  };

  const points = () => {
    const texts = document.createTreeWalker(bodyEl, NodeFilter.SHOW_TEXT | NodeFilter.SHOW_ELEMENT);
    const all = [];
    while (texts.nextNode()) {
      const node = texts.currentNode;
      if (node.nodeType === Node.TEXT_NODE) {
        if (node.parentElement !== bodyEl || node.data.trim()) for (let i = 0; i <= node.length; ++i) all.push([node, i]);
      } else if (node.matches('p, li, h1, h2, h3') && node.querySelector(':scope > br')) {
        all.push([node, [...node.childNodes].indexOf(node.querySelector(':scope > br'))]);
      }
    }
    return all.length ? all : [[bodyEl, 0]];
  };
  const moveCaret = () => {
    const all = points();
    const start = pick(all);
    const end = random() < 0.35 ? pick(all) : start;
    bodyEl.focus();
    const range = document.createRange();
    range.setStart(...start);
    range.setEnd(...start);
    if (range.comparePoint(...end) > 0) range.setEnd(...end); else range.setStart(...end);
    select(range);
    saveSelection();
  };

  const key = (name, init, fallback) => {
    const event = new KeyboardEvent('keydown', { key: name, code: name, bubbles: true, cancelable: true, ...init });
    if (bodyEl.dispatchEvent(event)) fallback();
  };
  const asked = (inputType, command, value) => {
    const event = new InputEvent('beforeinput', { inputType, data: value, bubbles: true, cancelable: true });
    if (bodyEl.dispatchEvent(event)) document.execCommand(command, false, value);
  };
  const paste = (html, plain) => {
    const data = new DataTransfer();
    if (html) data.setData('text/html', html);
    data.setData('text/plain', plain);
    bodyEl.dispatchEvent(new ClipboardEvent('paste', { clipboardData: data, bubbles: true, cancelable: true }));
  };
  const words = ['milk', 'tea', 'żółw', 'a<b', '&amp;', 'style="x"', 'class=\'y\'', '<div>'];
  const GIF = 'R0lGODlhAQABAAAAACw=';
  const isCollapsed = () => document.getSelection().isCollapsed;

  // Each: name, how often, whether it may take text away or bring some, what it does.
  const moves = [
    ['caret', 8, false, moveCaret],
    ['type', 8, true, () => { for (const c of pick(words)) asked('insertText', 'insertText', c); }],
    ['space', 1, true, () => asked('insertText', 'insertText', ' ')],
    ['Enter', 5, () => !isCollapsed(), () => key('Enter', {}, () => asked('insertParagraph', 'insertParagraph'))],
    ['Shift+Enter', 2, () => !isCollapsed(), () => key('Enter', { shiftKey: true }, () => asked('insertLineBreak', 'insertLineBreak'))],
    ['Backspace', 4, true, () => key('Backspace', {}, () => asked('deleteContentBackward', 'delete'))],
    ['Delete', 4, true, () => key('Delete', {}, () => asked('deleteContentForward', 'forwardDelete'))],
    ['Tab', 3, false, () => key('Tab', {}, () => {})],
    ['Shift+Tab', 3, false, () => key('Tab', { shiftKey: true }, () => {})],
    ['bold', 2, false, () => runCommand('bold')],
    ['italic', 1, false, () => runCommand('italic')],
    ['underline', 1, false, () => runCommand('underline')],
    ['strike', 1, false, () => runCommand('strikeThrough')],
    ['h1', 1, false, () => runCommand('formatBlock', 'h1')],
    ['h2', 1, false, () => runCommand('formatBlock', 'h2')],
    ['h3', 1, false, () => runCommand('formatBlock', 'h3')],
    ['p', 2, false, () => runCommand('formatBlock', 'p')],
    ['bullets', 3, false, () => runCommand('insertUnorderedList')],
    ['numbers', 3, false, () => runCommand('insertOrderedList')],
    ['checklist', 5, false, () => toggleChecklist()],
    ['divider', 1, () => !isCollapsed(), () => insertHTML('<hr>')],
    ['link', 1, true, () => runCommand('createLink', 'https://example.org/?a="b"&c')],
    ['tick', 3, false, () => { const boxes = bodyEl.querySelectorAll('.chk'); if (boxes.length) pick(boxes).click(); }],
    ['paste lines', 1, true, () => paste('', 'one\ntwo\n\nthree')],
    ['paste word', 1, true, () => paste('', 'word')],
    ['paste markup', 1, true, () => paste('<h2>head</h2><p>par <b>bold</b></p><ul><li>x<ul><li>y</li></ul></li></ul>', 'head')],
    ['paste wrappers', 1, true, () => paste('<div>one</div><div style="font-weight:bold">two</div><span>three</span>', 'one\ntwo')],
    ['paste checklist', 1, true, () => paste('<ul class="checklist"><li class="checked"><span class="chk checked" contenteditable="false"></span>done</li>'
      + '<li><span class="chk" contenteditable="false"></span>open</li></ul>', 'done\nopen')],
    ['picture', 1, true, () => insertPictures([new File([Uint8Array.from(atob(GIF), c => c.charCodeAt(0))], 'a.gif', { type: 'image/gif' })])],
    ['paste picture', 1, true, () => paste('<p>one<img src="data:image/gif;base64,' + GIF + '" width="3"></p><p>two</p>', 'one\ntwo')],
    ['new address', 1, true, () => runCommand('createLink', 'example.org')],
    ['undo', 1, true, () => runCommand('undo')],
    ['redo', 1, true, () => runCommand('redo')],
  ];
  const bag = moves.flatMap(move => Array(move[1]).fill(move));

  const trace = [];
  const fail = problem => problem + '\n' + trace.slice(-6).join('\n') + '\n' + composeHTML();
  setContent('<h1>Title</h1>');
  bodyEl.focus();
  placeCaretAtStart(bodyEl);
  for (let step = 0; step < stepCount; ++step) {
    const [name, , changesText, act] = pick(bag);
    const mayChange = typeof changesText === 'function' ? changesText() : changesText;
    const before = letters();
    const seen = marks.body();
    trace.push(name + '   at ' + seen);
    try {
      act();
      saveSelection(); // as the event does, a moment later
    } catch (error) {
      return fail('error in ' + name + ': ' + error.stack);
    }
    if (!mayChange && letters() !== before) return fail(name + ' changed the text: ' + before + ' > ' + letters());
    if (name === 'Backspace' && marks.body() === seen && !/^(<[^>]*>|☐|☑)*\|/.test(seen)) return fail('dead key');
    const found = faults();
    if (found) return fail('after ' + name + ': ' + found);
  }

  const made = view();
  const html = composeHTML();
  const end = past.length;
  setContentKeepingHistory(html);
  if (view() !== made) return fail('reads differently:\n' + made + '\n' + view());
  const second = composeHTML();
  setContentKeepingHistory(second);
  if (composeHTML() !== second) return fail('no fixed point:\n' + second + '\n' + composeHTML());

  // The whole way back and forth again.
  future = [];
  const texts = [];
  for (let i = 0; i <= end; ++i) {
    texts.push(composeHTML());
    undo();
  }
  if (composeHTML() !== '<h1>Title</h1>') return fail('undo does not lead to the start: ' + composeHTML());
  for (let i = 0; i <= end; ++i) redo();
  if (composeHTML() !== second) return fail('redo does not lead to the end: ' + composeHTML());
  return null;
};

// As setContent, but the steps that led here stay.
window.setContentKeepingHistory = html => {
  const kept = [past, future];
  window.setContent(html);
  [past, future] = kept;
};
