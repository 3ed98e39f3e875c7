// The notation of the page tests, put into the page beside its own script.
//
// "|" is the caret, "[" and "]" are the ends of a selection, <check> is a checklist, <li.checked> an
// item that is ticked, "☐" and "☑" are the box of an item. Reading changes nothing in the document.
(() => {
  const box = isTicked => '<span class="chk' + (isTicked ? ' checked' : '') + '" contenteditable="false" '
    + 'role="checkbox" aria-checked="' + isTicked + '"></span>';

  const expand = text => text
    .replace(/<check>/g, '<ul class="checklist">').replace(/<\/check>/g, '</ul>').replace(/<li\.checked>/g, '<li class="checked">')
    .replace(/☐/g, box(false)).replace(/☑/g, box(true));

  // The first place of the mark in the two regions; the mark itself is taken out.
  const take = mark => {
    for (const region of [titleEl, bodyEl]) {
      const texts = document.createTreeWalker(region, NodeFilter.SHOW_TEXT);
      while (texts.nextNode()) {
        const node = texts.currentNode;
        const offset = node.data.indexOf(mark);
        if (offset < 0) continue;
        node.deleteData(offset, 1);
        if (node.length > 0) return [node, offset, region];
        const place = [node.parentNode, [...node.parentNode.childNodes].indexOf(node), region];
        node.remove();
        return place;
      }
    }
    return null;
  };

  const load = (title, body) => {
    window.setContent('<h1>' + title + '</h1>' + expand(body));
    const caret = take('|');
    const start = caret || take('[');
    const end = caret || take(']');
    if (!start) return;
    start[2].focus();
    document.getSelection().setBaseAndExtent(start[0], start[1], end[0], end[1]);
    saveSelection(); // the event that does this comes a moment later
  };

  const attributes = element => {
    const names = element.getAttributeNames().filter(name => !(name === 'class' && element.matches('ul.checklist')));
    return names.sort().map(name => (name === 'class' ? '.' + element.className
      : ' ' + name + '="' + element.getAttribute(name) + '"')).join('');
  };

  const write = (parent, marks) => {
    const at = offset => marks.filter(m => m.node === parent && m.offset === offset).map(m => m.mark).join('');
    let text = '';
    if (parent.nodeType === Node.TEXT_NODE) {
      for (let i = 0; i <= parent.length; ++i) text += at(i) + parent.data.slice(i, i + 1);
      return text.replace(/\u00a0/g, '·');
    }
    [...parent.childNodes].forEach((node, i) => { text += at(i) + writeNode(node, marks); });
    return text + at(parent.childNodes.length);
  };

  const writeNode = (node, marks) => {
    if (node.nodeType === Node.TEXT_NODE) return write(node, marks);
    if (node.nodeType !== Node.ELEMENT_NODE) return '<!>';
    if (node.matches('span.chk')) {
      const isTicked = node.classList.contains('checked');
      const isWhole = node.getAttribute('role') === 'checkbox' && node.getAttribute('contenteditable') === 'false'
        && node.getAttribute('aria-checked') === String(isTicked) && !node.hasChildNodes();
      return (isTicked ? '☑' : '☐') + (isWhole ? '' : '(broken)');
    }
    const name = node.matches('ul.checklist') ? 'check' : node.localName;
    const isVoid = ['br', 'hr', 'img'].includes(name);
    return '<' + name + attributes(node) + '>' + (isVoid ? '' : write(node, marks) + '</' + name + '>');
  };

  const read = region => {
    const { anchorNode, anchorOffset, focusNode, focusOffset, isCollapsed, rangeCount } = document.getSelection();
    if (!rangeCount) return write(region, []);
    if (isCollapsed) return write(region, [{ node: anchorNode, offset: anchorOffset, mark: '|' }]);
    const range = document.getSelection().getRangeAt(0);
    return write(region, [{ node: range.startContainer, offset: range.startOffset, mark: '[' },
      { node: range.endContainer, offset: range.endOffset, mark: ']' }]);
  };

  let keysUp = 0;
  document.addEventListener('keyup', () => { keysUp += 1; }, true);

  window.marks = {
    load,
    title: () => read(titleEl),
    body: () => read(bodyEl),
    keysUp: () => keysUp,
  };
})();
