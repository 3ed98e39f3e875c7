// Offers the page its message handlers from the first line on. What is posted before the
// channel to the host stands is kept and sent in order.
(() => {
  const waiting = [];
  let host = null;
  const handler = name => ({
    postMessage(body) {
      if (host) host.receive(name, String(body)); else waiting.push([name, String(body)]);
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
    for (const [name, body] of waiting.splice(0)) host.receive(name, body);
  });
})();
