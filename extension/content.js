// Tolvane's content script: the page script (PageScript.js, loaded just before this file) in every
// document, in the extension's isolated world, talking to the extension's background over a port
// of its own. The page's scripts can neither see this world nor send anything into it.
(() => {
  const api = globalThis.browser || globalThis.chrome;
  // This document's realm, as the bar names it; a frame's place among its parent's frames, by
  // which the bar finds the frames of a frameset.
  // (randomUUID is for secure pages only; contest pages are often plain http.)
  const realm = Array.from(crypto.getRandomValues(new Uint32Array(4)), (n) => n.toString(16)).join('-');
  const frameIndex = () => {
    try {
      const parent = window.parent;
      if (parent === window) return -1;
      for (let i = 0; i < parent.frames.length; i++) if (parent.frames[i] === window) return i;
    } catch (e) {}
    return -1;
  };
  let port = null;
  const waiting = [];
  const post = (message) => {
    if (!port) connect();
    if (port) {
      try { port.postMessage(message); return; } catch (e) { port = null; }
    }
    if (waiting.length < 200) waiting.push(message);
  };
  const run = (message) => {
    const script = window.__tolvane;
    try {
      if (message.announce) return script.reportAttached();
      if (!Object.prototype.hasOwnProperty.call(script, message.fn) || typeof script[message.fn] !== 'function')
        throw new Error('No such call: ' + message.fn);
      // The writes still pending go first, so whatever is read sees them.
      if (message.writes && message.writes.length) script.apply(message.writes);
      const value = script[message.fn](...message.args);
      port.postMessage({ answer: message.call, value: value === undefined ? null : value });
    } catch (e) {
      port.postMessage({ answer: message.call, error: String((e && e.message) || e) });
    }
  };
  function connect() {
    // The extension was reloaded or removed: this document has no one to talk to any more.
    if (!api.runtime || !api.runtime.id) return;
    try {
      port = api.runtime.connect({ name: `tolvane:${realm}:${frameIndex()}` });
    } catch (e) {
      port = null;
      return;
    }
    port.onMessage.addListener(run);
    // The background restarts (a service worker put to sleep): this document connects again.
    port.onDisconnect.addListener(() => { port = null; setTimeout(() => { if (!port) connect(); }, 500); });
    while (waiting.length && port) port.postMessage(waiting.shift());
  }
  connect();
  tolvanePageScript((report) => post({ report }));
  // The page's dialogs, as its own world sees them open and close (sent before the dialog holds
  // this document up).
  addEventListener('tolvane-dialog-open', () => post({ dialog: true }), true);
  addEventListener('tolvane-dialog-closed', () => post({ dialog: false }), true);
  // A document the browser keeps for going back answers nothing meanwhile: it has gone until it
  // is shown again.
  addEventListener('pagehide', () => post({ shown: false }), true);
  addEventListener('pageshow', (e) => { if (e.persisted) post({ shown: true }); }, true);
})();
