// Tolvane's background: one native-messaging port to the bar (through Tolvane's host, which
// relays to the running bar), and one port to each document's content script. Towards the bar it
// speaks the part of WebDriver BiDi that Tolvane's window list uses: numbered commands answered by
// number, events by method. A tab is a top-level context named by its tab id, a frame
// "tab.frame"; a document's realm is the id its content script chose.
const api = globalThis.browser || globalThis.chrome;
const HostName = 'org.tolvane.bar';
const Channel = 'tolvane';

let host = null;
let subscribed = false; // the bar asked for events
let hostRetryMs = 1000;
const contexts = new Map(); // context -> { tabId, frameId, url, realm }
const documents = new Map(); // realm -> { port, context, tabId, frameId, index, calls: Map }
let nextCall = 1;

const contextOf = (tabId, frameId) => (frameId === 0 ? String(tabId) : `${tabId}.${frameId}`);
const tabOf = (context) => Number(String(context).split('.')[0]);

const emit = (method, params) => {
  if (host && subscribed) host.postMessage({ type: 'event', method, params });
};

// The context of a tab or frame, announced on its first mention (a frame's tab first). Frames
// are children of their tab: the bar needs no more of their nesting.
const ensureContext = (tabId, frameId, url) => {
  const id = contextOf(tabId, frameId);
  if (!contexts.has(id)) {
    if (frameId !== 0) ensureContext(tabId, 0, '');
    contexts.set(id, { tabId, frameId, url: url || '', realm: null });
    emit('browsingContext.contextCreated', { context: id, parent: frameId === 0 ? null : String(tabId), url: url || '', children: null });
  } else if (url) {
    contexts.get(id).url = url;
  }
  return id;
};

const forgetTab = (tabId) => {
  for (const [id, known] of contexts) {
    if (known.tabId === tabId && known.frameId !== 0) { contexts.delete(id); emit('browsingContext.contextDestroyed', { context: id }); }
  }
  if (contexts.delete(String(tabId))) emit('browsingContext.contextDestroyed', { context: String(tabId) });
};

class BidiError extends Error {
  constructor(error, message) { super(message); this.error = error; }
}
const noSuchFrame = () => new BidiError('no such frame', 'The document has gone.');

// A call into a document's page script, answered by its content script.
const callDocument = (doc, message) => new Promise((resolve, reject) => {
  const id = nextCall++;
  doc.calls.set(id, { resolve, reject });
  try {
    doc.port.postMessage(Object.assign({ call: id }, message));
  } catch (e) {
    doc.calls.delete(id);
    reject(noSuchFrame());
  }
});

// The frame at that place among the document's frames, for a frameset's filling.
const frameWindow = async (doc, index) => {
  const frames = (await api.webNavigation.getAllFrames({ tabId: doc.tabId })) || [];
  for (const frame of frames) {
    if (frame.parentFrameId !== doc.frameId) continue;
    const context = contextOf(doc.tabId, frame.frameId);
    const shown = documents.get((contexts.get(context) || {}).realm);
    if (shown && shown.index === index) return { type: 'window', value: { context } };
  }
  return { type: 'undefined' };
};

const tree = async () => {
  const result = [];
  for (const tab of await api.tabs.query({})) {
    const top = ensureContext(tab.id, 0, tab.url);
    const children = [];
    for (const frame of (await api.webNavigation.getAllFrames({ tabId: tab.id })) || []) {
      if (frame.frameId === 0) continue;
      children.push({ context: ensureContext(tab.id, frame.frameId, frame.url), parent: top, url: frame.url, children: [] });
    }
    result.push({ context: top, parent: null, url: tab.url, children });
  }
  return { contexts: result };
};

const openTab = async () => {
  try {
    return await api.tabs.create({ url: 'about:blank', active: true });
  } catch (e) {
    // No window to put it in.
    return (await api.windows.create({ url: 'about:blank', focused: true })).tabs[0];
  }
};

const commands = {
  'session.subscribe': async () => { subscribed = true; return {}; },
  // The page script is the content script: already in every document.
  'script.addPreloadScript': async () => ({ script: 'content-script' }),
  'browsingContext.getTree': tree,
  'script.callFunction': async ({ target }) => {
    const doc = documents.get((contexts.get(target.context) || {}).realm);
    if (!doc) throw noSuchFrame();
    doc.port.postMessage({ announce: true });
    return { type: 'success', realm: doc.realm, result: { type: 'undefined' } };
  },
  'script.evaluate': async ({ call, target }) => {
    const doc = documents.get(target.realm);
    if (!doc || !call) throw noSuchFrame();
    if (call.fn === 'frameWindow') return { type: 'success', result: await frameWindow(doc, call.args[0]) };
    try {
      const value = await callDocument(doc, call);
      return { type: 'success', result: { type: 'string', value: JSON.stringify([value]) } };
    } catch (e) {
      if (e instanceof BidiError) throw e;
      return { type: 'exception', exceptionDetails: { text: e.message } };
    }
  },
  'browsingContext.activate': async ({ context }) => {
    const tab = await api.tabs.update(tabOf(context), { active: true });
    await api.windows.update(tab.windowId, { focused: true });
    return {};
  },
  'browsingContext.create': async () => {
    const tab = await openTab();
    return { context: ensureContext(tab.id, 0, 'about:blank') };
  },
  'browsingContext.navigate': async ({ context, url }) => {
    await api.tabs.update(tabOf(context), { url });
    return { navigation: null, url };
  },
  'browsingContext.reload': async ({ context }) => { await api.tabs.reload(tabOf(context)); return {}; },
};

const onCommand = async (message) => {
  if (message && message.tolvane === 'bar-gone') { subscribed = false; return; }
  if (!message || typeof message.id !== 'number' || typeof message.method !== 'string') return;
  const command = commands[message.method];
  try {
    if (!command) throw new BidiError('unknown command', `${message.method} is not known here.`);
    const result = await command(message.params || {});
    host && host.postMessage({ type: 'success', id: message.id, result });
  } catch (e) {
    host && host.postMessage({ type: 'error', id: message.id, error: e.error || 'unknown error', message: String(e.message || e) });
  }
};

const connectHost = () => {
  host = api.runtime.connectNative(HostName);
  host.onMessage.addListener(onCommand);
  host.onDisconnect.addListener(() => {
    // No host installed, or it ended: tried again, less often the longer it fails.
    host = null;
    subscribed = false;
    setTimeout(connectHost, hostRetryMs);
    hostRetryMs = Math.min(hostRetryMs * 2, 60000);
  });
};

api.runtime.onConnect.addListener((port) => {
  const [kind, realm, index] = String(port.name).split(':');
  const sender = port.sender || {};
  if (kind !== 'tolvane' || !realm || !sender.tab || sender.id !== api.runtime.id) { port.disconnect(); return; }
  const tabId = sender.tab.id;
  const frameId = sender.frameId || 0;
  const context = ensureContext(tabId, frameId, sender.url);
  const doc = { port, realm, context, tabId, frameId, index: Number(index), calls: new Map() };
  const shown = () => {
    documents.set(realm, doc);
    contexts.get(context).realm = realm;
    emit('script.realmCreated', { realm, context, sandbox: Channel, type: 'window', origin: '' });
  };
  const gone = () => {
    for (const pending of doc.calls.values()) pending.reject(noSuchFrame());
    doc.calls.clear();
    if (!documents.delete(realm)) return;
    const known = contexts.get(context);
    if (known && known.realm === realm) known.realm = null;
    emit('script.realmDestroyed', { realm });
  };
  shown();
  port.onMessage.addListener((message) => {
    if (typeof message.shown === 'boolean') {
      if (message.shown) shown();
      else gone();
    } else if (typeof message.dialog === 'boolean') {
      // Calls into the tab's documents wait for none of them while the dialog is up.
      const realms = [...documents.values()].filter((d) => d.tabId === tabId).map((d) => d.realm);
      emit(message.dialog ? 'browsingContext.userPromptOpened' : 'browsingContext.userPromptClosed', { context: String(tabId), realms });
    } else if (typeof message.report === 'string') {
      emit('script.message', { channel: Channel, data: { type: 'string', value: message.report }, source: { realm, context } });
    } else if (doc.calls.has(message.answer)) {
      const pending = doc.calls.get(message.answer);
      doc.calls.delete(message.answer);
      if ('error' in message) pending.reject(new Error(message.error));
      else pending.resolve(message.value);
    }
  });
  port.onDisconnect.addListener(gone);
});

api.tabs.onCreated.addListener((tab) => ensureContext(tab.id, 0, tab.pendingUrl || tab.url || 'about:blank'));
api.tabs.onRemoved.addListener(forgetTab);
api.webNavigation.onBeforeNavigate.addListener(({ tabId, frameId, url }) => {
  const context = ensureContext(tabId, frameId, '');
  if (frameId === 0) emit('browsingContext.navigationStarted', { context, navigation: null, url });
});
api.webNavigation.onCommitted.addListener(({ tabId, frameId, url }) => {
  emit('browsingContext.navigationCommitted', { context: ensureContext(tabId, frameId, url), navigation: null, url });
});
const historyUpdated = ({ tabId, frameId, url }) => emit('browsingContext.historyUpdated', { context: ensureContext(tabId, frameId, url), url });
api.webNavigation.onHistoryStateUpdated.addListener(historyUpdated);
api.webNavigation.onReferenceFragmentUpdated.addListener(historyUpdated);
api.webNavigation.onCompleted.addListener(({ tabId, frameId, url }) => {
  emit('browsingContext.load', { context: ensureContext(tabId, frameId, url), navigation: null, url });
});
// A tab's requests, for its load progress.
const requests = { urls: ['<all_urls>'] };
const network = (method) => ({ tabId }) => { if (tabId >= 0) emit(method, { context: String(tabId) }); };
api.webRequest.onBeforeRequest.addListener(network('network.beforeRequestSent'), requests);
api.webRequest.onCompleted.addListener(network('network.responseCompleted'), requests);
api.webRequest.onErrorOccurred.addListener(network('network.fetchError'), requests);

// The browser wakes the background as it starts (not only on the first event it listens to), so
// the bar hears of the windows at once.
api.runtime.onStartup.addListener(() => {});
connectHost();
