// Offers the page its message handlers from the first line on. What is posted before the
// channel to the host stands is kept and sent in order.
(() => {
  // A long text goes in pieces: the channel copies each message several times, and the host
  // attends to its windows between two of them.
  const LONGEST_PIECE = 1 << 18;
  const waiting = [];
  let host = null;
  const send = (name, text) => {
    let begin = 0;
    while (text.length - begin > LONGEST_PIECE) {
      let end = begin + LONGEST_PIECE;
      if (/[\uD800-\uDBFF]/.test(text[end - 1])) end -= 1; // half a character is lost on the way
      const piece = text.slice(begin, end);
      if (begin === 0) host.receiveBeginning(piece); else host.receiveMiddle(piece);
      begin = end;
    }
    if (begin === 0) host.receive(name, text); else host.receiveEnd(name, text.slice(begin));
  };
  const handler = name => ({
    postMessage(body) {
      if (host) send(name, String(body)); else waiting.push([name, String(body)]);
    },
  });
  window.webkit = {
    messageHandlers: {
      plim: handler('plim'), plimState: handler('plimState'), plimLog: handler('plimLog'),
      plimLink: handler('plimLink'), plimHover: handler('plimHover'), plimImage: handler('plimImage'),
    },
  };
  new QWebChannel(qt.webChannelTransport, channel => {
    host = channel.objects.host;
    for (const [name, body] of waiting.splice(0)) send(name, body);
  });
})();
