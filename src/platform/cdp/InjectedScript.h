#pragma once

#include <QString>

// The script Tolvane runs in every frame, in a world of its own that the page cannot see:
// it hands out element ids, answers reads and writes, and reports the user's actions through
// the binding. Double clicks are cancelled here, as the watched documents require.
namespace InjectedScript {

inline const QString World = QStringLiteral("tolvane");
inline const QString Binding = QStringLiteral("__tolvaneEvent");

inline QString source()
{
    return QStringLiteral(R"JS(
(() => {
  if (window.__tolvane) return;
  const registry = new Map();
  const ids = new WeakMap();
  let nextId = 1;
  let seq = 0;
  const idOf = (el) => {
    if (!el) return 0;
    let id = ids.get(el);
    if (!id) { id = nextId++; ids.set(el, id); registry.set(id, new WeakRef(el)); }
    return id;
  };
  const element = (id) => {
    const ref = registry.get(id);
    const el = ref && ref.deref();
    if (!el || !el.isConnected) throw new Error('The element is no longer in the page.');
    return el;
  };
  const report = (kind, extra) => {
    // The element active when it happened goes along: the event may be handled a little later.
    const active = idOf(document.activeElement);
    try { __tolvaneEvent(JSON.stringify(Object.assign({ seq: ++seq, kind, active }, extra || {}))); } catch (e) {}
  };
  const isText = (el) => el.tagName === 'TEXTAREA';
  const frames = () => Array.from(document.querySelectorAll('iframe, frame'));
  window.__tolvane = {
    doc(what) {
      switch (what) {
        case 'title': return document.title;
        case 'url': return location.href;
        case 'urlUnencoded': try { return decodeURI(location.href); } catch (e) { return location.href; }
        case 'readyState': return document.readyState;
        case 'cookie': try { return document.cookie; } catch (e) { return ''; }
        case 'activeElement': return idOf(document.activeElement);
        case 'framesLength': return frames().length;
      }
      throw new Error('Unknown document property ' + what);
    },
    tags(name) { return Array.from(document.getElementsByTagName(name)).map(idOf); },
    frame(index) { return frames()[index] || null; },
    get(id, what) {
      const el = element(id);
      switch (what) {
        case 'tagName': return el.tagName;
        case 'innerText': return isText(el) ? el.value : el.innerText;
        case 'name': return el.getAttribute('name') || '';
        case 'type': return el.type === undefined ? null : el.type;
        case 'value': return el.value === undefined ? null : el.value;
        case 'checked': return el.checked === undefined ? null : el.checked;
        case 'selectedIndex': return el.selectedIndex === undefined ? null : el.selectedIndex;
      }
      throw new Error('Unknown element property ' + what);
    },
    set(id, what, value) {
      const el = element(id);
      if (what === 'innerText') { if (isText(el)) el.value = value; else el.innerText = value; return true; }
      if (what === 'scrollIntoView') { el.scrollIntoView(); return true; }
      if (!(what in el)) return null;
      el[what] = value;
      return true;
    },
  };
  const link = (target) => target && target.closest ? target.closest('a[href], area[href]') : null;
  addEventListener('focusin', (e) => { report('focusin'); report('propertychange'); }, true);
  addEventListener('focus', (e) => { if (e.target === window) report('activate'); }, true);
  addEventListener('input', (e) => { if (e.isTrusted) report('propertychange'); }, true);
  addEventListener('change', (e) => { if (e.isTrusted) report('propertychange'); }, true);
  addEventListener('click', (e) => { report('click'); }, true);
  addEventListener('mousedown', (e) => { if (e.detail === 2) e.preventDefault(); }, true);
  addEventListener('dblclick', (e) => { e.preventDefault(); report('dblclick'); }, true);
  document.addEventListener('readystatechange', () => report('readystatechange'), true);
  addEventListener('mouseover', (e) => { const a = link(e.target); if (a) report('status', { text: a.href }); }, true);
  addEventListener('mouseout', (e) => { if (link(e.target)) report('status', { text: '' }); }, true);
})();
)JS");
}

} // namespace InjectedScript
