// ---- Pictures ----------------------------------------------------------------------------------
//
// A picture comes in with its bytes as its address, at once, so that whatever happens next finds it
// in the document. The host is given the bytes and answers with the file it has put them into; that
// takes their place. Until then reports wait, for a moment: not every one of them shall carry
// megabytes. What the host cannot store stays as it is.

const PICTURE_TYPES = new Set(['image/png', 'image/jpeg', 'image/gif', 'image/webp', 'image/bmp']);
const PICTURE_DATA = /^data:image\/(png|jpe?g|gif|webp|bmp);base64,./i;
const LARGEST_PICTURE = 48 * 1024 * 1024; // bytes; the channel to the host carries no more than some 100 MB at once

const picturesUnderWay = new Map(); // the bytes, as an address, by the ticket they were sent with
const picturesRefused = new Set();
let lastTicket = 0;

function picturesOf(data) {
  return [...data.files].filter(file => PICTURE_TYPES.has(file.type));
}

// While it is dragged only the kinds of what a drag brings can be seen.
function bringsPictures(data) {
  return [...data.items].some(item => item.kind === 'file' && PICTURE_TYPES.has(item.type));
}

// A picture that comes with nothing else: its own markup, or the path of the file that it is.
function isPictureAlone(html, plain) {
  if (!plain.split('\n').every(line => isBlankText(line) || /^(\/|file:)/.test(line))) return false;
  const root = makeHarmless(parseInert(html));
  return isBlankText(root.textContent) && root.querySelectorAll('img').length === (isBlankText(html) ? 0 : 1);
}

function insertPictures(files) {
  const addresses = files.map(addressOfFile).filter(Boolean);
  if (!addresses.length) return;
  beginStep();
  settleCaret();
  // Put in under a short name first: the engine is slow with megabytes of markup.
  const nameOf = index => 'data:,picture-' + index;
  sendingPictures(() => {
    insertMarkup(addresses.map((address, index) => '<img src="' + nameOf(index) + '">').join(''));
    addresses.forEach((address, index) => setSource([bodyEl], nameOf(index), address));
  });
  finishEdit();
}

// Read without waiting: the picture belongs where the caret is now, not where it is later.
function addressOfFile(file) {
  if (file.size > LARGEST_PICTURE) {
    post('plimLog', 'picture-too-large: ' + file.size);
    return null;
  }
  const url = URL.createObjectURL(file);
  try {
    const request = new XMLHttpRequest();
    request.open('GET', url, false);
    request.overrideMimeType('text/plain; charset=x-user-defined'); // leaves the low byte of each letter alone
    request.send();
    const bytes = bytesOf(request.responseText);
    return bytes ? 'data:' + file.type + ';base64,' + btoa(bytes) : null;
  } catch (error) {
    post('plimLog', 'picture-unreadable: ' + error.name);
    return null;
  } finally {
    URL.revokeObjectURL(url);
  }
}

function bytesOf(text) {
  const bytes = new Uint8Array(text.length);
  for (let i = 0; i < text.length; ++i) bytes[i] = text.charCodeAt(i);
  const chunk = 8192; // as many arguments as a call takes
  let result = '';
  for (let i = 0; i < bytes.length; i += chunk) result += String.fromCharCode.apply(null, bytes.subarray(i, i + chunk));
  return result;
}

// Gives the host the pictures that the edit brings. The engine reports while it edits, so that reports
// are held back from before it on.
function sendingPictures(edit) {
  holdReports();
  edit();
  sendPictures();
  if (!picturesUnderWay.size) releaseReports();
}

function sendPictures() {
  const underWay = new Set(picturesUnderWay.values());
  for (const picture of bodyEl.querySelectorAll('img[src^="data:" i]')) {
    const data = picture.getAttribute('src');
    if (!PICTURE_DATA.test(data) || underWay.has(data) || picturesRefused.has(data)) continue;
    lastTicket += 1;
    underWay.add(data);
    picturesUnderWay.set(String(lastTicket), data);
    post('plimImage', JSON.stringify({ ticket: String(lastTicket), data }));
  }
}

// The host's answer; no address when it could not store the picture.
function pictureStored(ticket, address) {
  const data = picturesUnderWay.get(ticket);
  if (data === undefined) return;
  picturesUnderWay.delete(ticket);
  if (address) moveToFile(data, address); else picturesRefused.add(data);
  if (!picturesUnderWay.size) releaseReports();
}

// In the contents that undo and redo go to as well: the bytes are not to come back.
function moveToFile(data, address) {
  setSource([titleEl, bodyEl, ...[...past, ...future].flatMap(state => state.regions)], data, address);
}

function setSource(regions, before, after) {
  for (const picture of regions.flatMap(region => [...region.querySelectorAll('img')])) {
    if (picture.getAttribute('src') === before) picture.setAttribute('src', after);
  }
}
