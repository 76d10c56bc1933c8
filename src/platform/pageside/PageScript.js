// The script Tolvane runs in every frame, in a realm of its own that the page cannot see: it
// hands out element ids, answers reads and writes, and reports the user's actions through the
// function the browser adapter gives it (`send`, taking one text message: a report in JSON).
// Double clicks are cancelled here, as the watched documents require. The file defines the
// function; the adapter calls it (an extension's content script is this file as it stands).
var tolvanePageScript = (send) => {
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
  const alive = (id) => {
    const ref = registry.get(id);
    const el = ref && ref.deref();
    return el && el.isConnected ? el : null;
  };
  // A field the page has just removed can still be read, as the user left it.
  const element = (id) => {
    const ref = registry.get(id);
    const el = ref && ref.deref();
    if (!el) throw new Error('The element is no longer in the page.');
    return el;
  };
  const isText = (el) => el.tagName === 'TEXTAREA';
  const frames = () => Array.from(document.querySelectorAll('iframe, frame'));
  // The input types the classic browser knew; it showed every other one (email, tel, date, ...)
  // to its scripts as a text field, and so does this.
  const classicTypes = new Set(['text', 'password', 'checkbox', 'radio', 'submit', 'reset', 'file', 'hidden', 'image', 'button']);
  const typeOf = (el) => {
    if (el.type === undefined) return null;
    return el.tagName !== 'INPUT' || classicTypes.has(el.type) ? el.type : 'text';
  };
  // Form fields in document order, those of open shadow roots included (a host's shadow tree
  // before its own children). Closed shadow roots cannot be reached.
  const fieldNames = ['input', 'textarea', 'select'];
  // Shadow roots are watched for added fields too, once the document is watched at all.
  let watcher = null;
  const watchedRoots = new WeakSet();
  const headingTags = new Set(['h1', 'h2', 'h3', 'h4', 'h5', 'h6', 'legend']);
  const fieldsByName = () => {
    const found = { input: [], textarea: [], select: [], label: [], heading: new Map() };
    let heading = null;
    const visit = (root) => {
      const walker = document.createTreeWalker(root, NodeFilter.SHOW_ELEMENT);
      for (let el = walker.nextNode(); el; el = walker.nextNode()) {
        const list = found[el.localName];
        if (list) { list.push(el); if (heading) found.heading.set(el, heading); }
        if (headingTags.has(el.localName)) heading = el;
        if (el.shadowRoot) {
          if (watcher && !watchedRoots.has(el.shadowRoot)) {
            watchedRoots.add(el.shadowRoot);
            watcher.observe(el.shadowRoot, { childList: true, subtree: true });
          }
          visit(el.shadowRoot);
        }
      }
    };
    visit(document);
    return found;
  };
  const elementsNamed = (name) => {
    const lower = String(name).toLowerCase();
    return fieldNames.includes(lower) ? fieldsByName()[lower] : Array.from(document.getElementsByTagName(name));
  };
  // The focus inside open shadow roots is the inner field's.
  const deepActive = () => {
    let active = document.activeElement;
    while (active && active.shadowRoot && active.shadowRoot.activeElement) active = active.shadowRoot.activeElement;
    return active;
  };
  const targetOf = (e) => (e.composedPath && e.composedPath()[0]) || e.target;
  const read = (el, what) => {
    switch (what) {
      case 'tagName': return el.tagName;
      case 'innerText': return isText(el) ? el.value : el.innerText;
      case 'name': return el.getAttribute('name') || '';
      case 'type': return typeOf(el);
      case 'value': return el.value === undefined ? null : el.value;
      case 'checked': return el.checked === undefined ? null : el.checked;
      case 'selectedIndex': return el.selectedIndex === undefined ? null : el.selectedIndex;
      case 'hint': return hintOf(el);
      case 'typed': return !isTyping(el) || typed.has(el);
    }
    throw new Error('Unknown element property ' + what);
  };
  // What the page says of a field besides its name, for telling what it asks for: texts clipped,
  // a label's text without the field's own, or else the short caption just before the field (a
  // plain cell or span, as many forms have). Bounded work whatever the page holds.
  const clip = (text, most) => String(text || '').slice(0, 4 * (most || 200)).replace(/\s+/g, ' ').trim().slice(0, most || 200);
  const textBesides = (node, field) => {
    if (!node.contains(field)) return clip(node.textContent);
    let text = '';
    for (const child of node.childNodes) if (!child.contains(field)) text += ' ' + clip(child.textContent);
    return clip(text);
  };
  const captionBefore = (el) => {
    let node = el;
    for (let up = 0; up < 3 && node && node !== document.body; up++, node = node.parentNode) {
      let sibling = node.previousSibling;
      for (let steps = 0; sibling && steps < 4; steps++, sibling = sibling.previousSibling) {
        if (sibling.nodeType === 1 && sibling.querySelector && (fieldNames.includes(sibling.localName) || sibling.querySelector('input,select,textarea'))) return '';
        const text = clip(sibling.textContent);
        if (text) return text.length <= 80 ? text : '';
      }
    }
    return '';
  };
  const textFieldTypes = new Set(['text', 'email', 'tel', 'number', 'url', 'search', 'date', 'month', '']);
  // Each label's text, by the field it labels: taken once for a whole listing.
  const labelTexts = (labels) => {
    const texts = new Map();
    for (const l of labels) {
      const field = l.control;
      const known = field && (texts.get(field) || '');
      if (field && known.length < 200) texts.set(field, clip(known + ' ' + textBesides(l, field)));
    }
    return texts;
  };
  // The page's fields as last walked, until its elements change: a report's hint needs the
  // other fields (twins, headings) without walking a large page at every key.
  let walked = null;
  new MutationObserver(() => { walked = null; }).observe(document, { childList: true, subtree: true, attributes: true, attributeFilter: ['name', 'id'] });
  const fieldsNow = () => walked || (walked = fieldsByName());
  // Fields of one kind that share a name, or have none, are told apart: by their id where no
  // other of them has it, else by their place among them.
  const twinKind = (el) => (el.tagName === 'INPUT' ? (typeOf(el) === 'text' ? 'text' : '') : el.localName);
  const twinsOf = (found) => {
    const groups = new Map();
    for (const tag of fieldNames) for (const el of found[tag]) {
      const kind = twinKind(el);
      if (!kind) continue;
      const key = kind + '\n' + (el.getAttribute('name') || '');
      if (!groups.has(key)) groups.set(key, []);
      groups.get(key).push(el);
    }
    const twins = new Map();
    for (const [key, group] of groups) {
      if (group.length < 2 && !key.endsWith('\n')) continue;
      const ids = new Map();
      for (const el of group) if (el.id) ids.set(el.id, (ids.get(el.id) || 0) + 1);
      group.forEach((el, i) => twins.set(el, '#' + (el.id && ids.get(el.id) === 1 ? clip(el.id, 100) : String(i + 1))));
    }
    return twins;
  };
  const twinOf = (el) => {
    const name = el.getAttribute('name');
    if (name && el.getRootNode() === document) {
      try { if (document.getElementsByName(name).length < 2) return ''; } catch (e) {}
    }
    return twinsOf(fieldsNow()).get(el) || '';
  };
  // The part of the form a field is in: its fieldset's legend, else the nearest heading before
  // it within its form.
  const sectionOf = (el, headings) => {
    const legend = el.closest && el.closest('fieldset') && el.closest('fieldset').querySelector('legend');
    if (legend) return clip(legend.textContent, 80);
    const heading = headings.get(el);
    const form = el.form || (el.closest && el.closest('form'));
    return heading && (!form || form.contains(heading)) ? clip(heading.textContent, 80) : '';
  };
  // Where the user could not type: read-only, disabled, hidden, or placed off the page.
  const outOfReach = (el) => {
    if (el.readOnly || el.disabled || el.type === 'hidden') return true;
    const shown = el.checkVisibility ? el.checkVisibility({ visibilityProperty: true, checkVisibilityCSS: true }) : el.getClientRects().length > 0;
    if (!shown) return true;
    const box = el.getBoundingClientRect();
    return box.right + scrollX <= 0 || box.bottom + scrollY <= 0 || box.width < 2 || box.height < 2;
  };
  const hintOf = (el, labels, twins, headings) => {
    if (el.tagName === 'INPUT' && !textFieldTypes.has(el.type) && classicTypes.has(el.type)) return null;
    if (!fieldNames.includes(el.localName)) return null;
    let label = '';
    if (labels) label = labels.get(el) || '';
    else try { for (const l of el.labels || []) { label = clip(label + ' ' + textBesides(l, el)); if (label.length >= 200) break; } } catch (e) {}
    // Only what the page gives: most fields have few of these.
    const hint = { type: clip(el.getAttribute('type') || el.type, 20) };
    const give = (key, text) => { if (text) hint[key] = text; };
    give('label', label || captionBefore(el));
    give('autocomplete', clip(el.getAttribute('autocomplete')));
    give('id', clip(el.id));
    give('placeholder', clip(el.getAttribute('placeholder')));
    let aria = clip(el.getAttribute('aria-label'));
    const by = el.getAttribute('aria-labelledby');
    if (by) for (const id of clip(by, 300).split(' ').slice(0, 4)) { const ref = id && document.getElementById(id); if (ref) aria = clip(aria + ' ' + clip(ref.textContent)); }
    give('aria', aria);
    give('twin', twins ? twins.get(el) : twinOf(el));
    give('section', sectionOf(el, headings || fieldsNow().heading));
    give('lang', clip(document.documentElement.lang, 20));
    if (outOfReach(el)) hint.off = true;
    if (el.tagName === 'SELECT') {
      hint.options = Array.from(el.options).slice(0, 400).map((o) => [clip(o.value, 100), clip(o.textContent, 100)]);
      // A choice the page made in advance (a country preselected), not the browser's first option.
      if (el.selectedIndex > 0 || Array.from(el.options).some((o) => o.defaultSelected && o.value)) hint.chosen = true;
    }
    return hint;
  };
  // What a fill or a capture reads of a field (a plain element's text is left out: it costs a layout).
  const fieldOf = (el) => {
    const properties = {};
    for (const what of ['tagName', 'name', 'type', 'value', 'checked', 'selectedIndex']) properties[what] = read(el, what);
    if (isText(el)) properties.innerText = el.value;
    return properties;
  };
  // What is the user's own: a focus move only while one of the user's key or pointer presses is
  // handled (a page script's focus() is trusted too), and a field's state as the user left it:
  // arriving, typing or choosing; not what a page script set in it afterwards.
  let userPress = false;
  let pressEdits = 0;
  const press = (e) => {
    if (!e.isTrusted) return;
    pressEdits = 0;
    if (userPress) return;
    userPress = true;
    setTimeout(() => { userPress = false; }, 0);
  };
  // A trusted paste, drop or input method is the user's: no page script can raise one. The
  // desktop delivers a key going down and the character it types as two messages, so the
  // character's keypress is a press of its own.
  for (const type of ['keydown', 'keypress', 'mousedown', 'pointerdown', 'touchstart', 'paste', 'drop', 'compositionstart']) addEventListener(type, press, true);
  // Text typed by the user: an edit while one of the user's presses is handled, at most one
  // character a press (a page's execCommand('insertText') raises trusted input events too,
  // even inside the user's key handling), a paste, a drop, an input method or the browser's own
  // autofill. A field a page script wrote into that way is not the user's until the user
  // empties it; nor is one Tolvane filled until the user types in it.
  const isTyping = (el) => el.tagName === 'TEXTAREA' || (el.tagName === 'INPUT' && typeOf(el) === 'text');
  const typed = new WeakSet();
  const planted = new WeakSet();
  const userEdit = (e) => {
    if (!(e instanceof InputEvent)) return true;
    const kind = e.inputType || '';
    if (kind === 'insertReplacementText' || kind.includes('Composition')) return true;
    if (!userPress) return false;
    if (kind === 'insertFromPaste' || kind === 'insertFromDrop') return true;
    // Firefox types a character beyond the first plane as two edits of one key.
    return ++pressEdits <= 2 && (!kind.startsWith('insert') || Array.from(e.data || '').length <= 1);
  };
  const vouched = new WeakMap();
  const vouch = (el) => { try { if (el && el.isConnected && el !== document.body) vouched.set(el, fieldOf(el)); } catch (e) {} };
  const stateOf = (el) => {
    const state = fieldOf(el);
    const own = vouched.get(el);
    if (own) for (const what of ['value', 'checked', 'selectedIndex', 'innerText']) if (what in own) state[what] = own[what];
    state.typed = !isTyping(el) || typed.has(el);
    return state;
  };
  // The page's own fields (there when it completed) and those already reported as added; and
  // the fields a fill has written. Added fields are the rest: a fill that read a field but did
  // not write it (a repeat let be) leaves it to be reported.
  const claimed = new WeakSet();
  const filled = new WeakSet();
  // Elements with what a fill reads of them, and their radio groups.
  const listOf = (elements, extra, labels, found) => {
    const all = found || fieldsNow();
    const twins = twinsOf(all);
    const groups = new Map();
    const groupOf = (el, id) => {
      const name = el.getAttribute('name');
      if (el.type !== 'radio' || !name) return 0;
      const owner = el.form || el.getRootNode();
      if (!groups.has(owner)) groups.set(owner, new Map());
      const named = groups.get(owner);
      if (!named.has(name)) named.set(name, id);
      return named.get(name);
    };
    return elements.map((el) => {
      const id = idOf(el);
      const properties = fieldOf(el);
      properties.hint = hintOf(el, labels, twins, all.heading);
      if (extra) extra(el, properties);
      const options = el.tagName === 'SELECT' ? Array.from(el.options, (o) => o.value) : [];
      return { id, properties, options, group: groupOf(el, id) };
    });
  };
  const fieldLists = () => {
    const found = fieldsByName();
    const labels = labelTexts(found.label);
    const lists = {};
    for (const name of fieldNames) lists[name] = listOf(found[name], null, labels, found);
    return lists;
  };
  // The cookie is asked of the browser process each time: only focus handlers read it.
  const docTexts = ['title', 'url', 'urlUnencoded', 'readyState'];
  let lastActive = null;
  const report = (kind, extra) => {
    // The page as it was goes along: the handlers may run a little later, and need no call back.
    const activeEl = deepActive();
    const fields = {};
    for (const el of [activeEl, lastActive]) { try { if (el) fields[idOf(el)] = Object.assign(stateOf(el), { hint: hintOf(el) }); } catch (e) {} }
    if (kind === 'propertychange') lastActive = activeEl;
    const doc = {};
    for (const what of docTexts) doc[what] = window.__tolvane.doc(what);
    if (kind === 'focusin' || kind === 'activate') doc.cookie = window.__tolvane.doc('cookie');
    try { send(JSON.stringify(Object.assign({ seq: ++seq, kind, active: idOf(activeEl), fields, doc }, extra || {}))); } catch (e) {}
  };
  // Fields the page adds once it has completed (forms rendered late, route changes): looked for
  // at most every ReportMs after elements were added, reported once, given out once.
  const ReportMs = 120;
  // Fields not yet taken (nobody followed the page when they were reported, or the bar was
  // paused) are reported again, once a second.
  const RepeatMs = 1000;
  let added = [];
  let checkTimer = 0;
  let checkDue = 0;
  let lastCheck = 0;
  const check = () => {
    checkTimer = 0;
    lastCheck = performance.now();
    const found = fieldsByName();
    for (const name of fieldNames) for (const el of found[name]) if (!claimed.has(el) && !filled.has(el)) { claimed.add(el); added.push(el); }
    added = added.filter((el) => el.isConnected && !filled.has(el));
    if (!added.length) return;
    report('fieldsadded');
    checkAt(lastCheck + RepeatMs);
  };
  const checkAt = (due) => {
    if (checkTimer && checkDue <= due) return;
    clearTimeout(checkTimer);
    checkDue = due;
    checkTimer = setTimeout(check, Math.max(0, due - performance.now()));
  };
  const mutated = (records) => {
    if (checkTimer && checkDue <= lastCheck + ReportMs) return;
    for (const record of records) for (const node of record.addedNodes) if (node.nodeType === 1) { checkAt(lastCheck + ReportMs); return; }
  };
  const watch = () => {
    if (watcher) return;
    watcher = new MutationObserver(mutated);
    // What is there at completion is the page's own, which its fill takes.
    const found = fieldsByName();
    for (const name of fieldNames) for (const el of found[name]) claimed.add(el);
    watcher.observe(document, { childList: true, subtree: true });
  };
  window.__tolvane = {
    doc(what) {
      switch (what) {
        case 'title': return document.title;
        case 'url': return location.href;
        case 'urlUnencoded': try { return decodeURI(location.href); } catch (e) { return location.href; }
        case 'readyState': return document.readyState;
        case 'cookie': try { return document.cookie; } catch (e) { return ''; }
        case 'activeElement': return idOf(deepActive());
        case 'framesLength': return frames().length;
        case 'visibility': return document.visibilityState;
      }
      throw new Error('Unknown document property ' + what);
    },
    tags(name) { return elementsNamed(name).map(idOf); },
    list(name) { return listOf(elementsNamed(name)); },
    // What a fill reads first, in one answer: the document's texts and its form fields.
    snapshot() {
      const doc = {};
      for (const what of docTexts) doc[what] = this.doc(what);
      // As text: the browser sends a string on much faster than it converts an object.
      return JSON.stringify({ doc, lists: fieldLists() });
    },
    // The fields the page added since they were last given out, each with whether the user has
    // been in it.
    added() {
      const given = added.filter((el) => el.isConnected && !filled.has(el));
      added = [];
      return listOf(given, (el, properties) => { properties.touched = vouched.has(el); });
    },
    // Fields are written one after the other, each announced to the page before the next is
    // written (as a user goes from field to field): a framework that re-renders the form on one
    // field's event would otherwise put back what the others held before.
    apply(writes) {
      let field = null;
      let told = true;
      for (const [id, what, value] of writes) {
        const el = alive(id);
        if (el !== field) { if (!told) announce(field); field = el; told = true; }
        const done = write(el, what, value);
        if (done === null) throw new Error("Object doesn't support this property or method");
        if (done === Wrote) told = false;
      }
      if (!told) announce(field);
      return true;
    },
    frame(index) { return frames()[index] || null; },
    frameWindow(index) { return (frames()[index] || {}).contentWindow; },
    // A document that completed before anyone followed it says so, having no load to report.
    reportAttached() {
      if (document.readyState !== 'complete') return;
      try { send(JSON.stringify({ seq: ++seq, kind: 'attached' })); } catch (e) {}
      watch();
    },
    get(id, what) { return read(element(id), what); },
    set(id, what, value) {
      try { return this.apply([[id, what, value]]); } catch (e) { return null; }
    },
  };
  // One write of a fill: Wrote when it changed the field and the page is still to hear of it,
  // Told when a click already told it (a check box or radio button changed as a user's click
  // changes it), Quiet when there is nothing to tell, null when the field has no such property.
  const Wrote = 1;
  const Told = 2;
  const Quiet = 3;
  const write = (el, what, value) => {
    // A field the page removed or replaced meanwhile takes the write and keeps nothing, as a
    // document the page left does; the others are still written.
    if (!el) return Quiet;
    if (what === 'scrollIntoView') { el.scrollIntoView(); return Quiet; }
    // What Tolvane writes stands as the field's state until the user changes it.
    vouched.delete(el);
    typed.delete(el);
    filled.add(el);
    if (what === 'innerText' && !isText(el)) { el.innerText = value; return Quiet; }
    if (what === 'innerText') what = 'value';
    if (!(what in el)) return null;
    const choice = el.type === 'checkbox' || el.type === 'radio';
    if (what === 'checked' && choice && el.checked !== !!value && (value || el.type === 'checkbox')) {
      // A page that refuses the click (preventDefault) has its way, as with the user's click.
      el.click();
      return Told;
    }
    // A list given a value none of its options has keeps its selection, as the classic browser
    // did (today's empties it).
    if (what === 'value' && el.tagName === 'SELECT' && !Array.from(el.options).some((o) => o.value === value)) return Quiet;
    const before = el[what];
    el[what] = value;
    // As with a user's edit, only a change is heard of: a field left as it was raises nothing
    // (no validation of fields the user has not reached yet).
    return el[what] === before ? Quiet : Wrote;
  };
  // The page hears of a written field what a user's edit raises, input then change:
  // frameworks keep forms in their own state and would otherwise submit what they had. The
  // events are the page's own (untrusted), which Tolvane never takes for the user's.
  const announce = (el) => {
    if (!el.isConnected) return;
    el.dispatchEvent(new Event('input', { bubbles: true, composed: true }));
    el.dispatchEvent(new Event('change', { bubbles: true }));
  };
  const link = (target) => target && target.closest ? target.closest('a[href], area[href]') : null;
  // Events inside a shadow root reach the window as its host's, and change not at all: the
  // shadow roots the user works in are listened to themselves.
  const listened = new WeakSet();
  const edited = (e) => {
    if (!e.isTrusted) return;
    const el = targetOf(e);
    if (el && isTyping(el)) {
      if (e.type === 'input') {
        if (!userEdit(e)) { planted.add(el); typed.delete(el); return; }
        if (planted.has(el) && String(el.value).length > 1) return;
        planted.delete(el);
        typed.add(el);
      } else if (!typed.has(el)) {
        // The change a page's own insertion raises when the field loses the focus.
        return;
      }
    }
    vouch(el);
    report('propertychange');
  };
  const listenInside = (e) => {
    for (const node of e.composedPath()) {
      if (node instanceof ShadowRoot && !listened.has(node)) { listened.add(node); node.addEventListener('change', edited, true); }
    }
  };
  // A page's own events (a script's click(), dispatched input) are not reported: a page that
  // floods them costs the bar nothing.
  addEventListener('focusin', (e) => {
    // A press moves the focus once; a script's move right after it is the script's.
    if (!userPress) return;
    userPress = false;
    listenInside(e);
    vouch(targetOf(e));
    report('focusin');
    report('propertychange');
  }, true);
  addEventListener('focus', (e) => { if (e.target === window) report('activate'); }, true);
  addEventListener('input', edited, true);
  addEventListener('change', edited, true);
  addEventListener('click', (e) => { if (e.isTrusted) report('click'); }, true);
  addEventListener('mousedown', (e) => { if (e.detail === 2) e.preventDefault(); }, true);
  addEventListener('dblclick', (e) => { e.preventDefault(); if (e.isTrusted) report('dblclick'); }, true);
  document.addEventListener('readystatechange', () => {
    // The fill that follows completion reads the fields from the report, not from a page that
    // may be busy with its frames by then.
    report('readystatechange', document.readyState === 'complete' ? { lists: fieldLists() } : undefined);
    if (document.readyState === 'complete') watch();
  }, true);
  window.__tolvane.reportAttached();
  const status = (text) => { try { send(JSON.stringify({ seq: ++seq, kind: 'status', text })); } catch (e) {} };
  // The address after a jump within the page, for browsers that are not asked about each jump.
  addEventListener('hashchange', (e) => {
    if (e.isTrusted) try { send(JSON.stringify({ seq: ++seq, kind: 'address', url: location.href })); } catch (x) {}
  }, true);
  addEventListener('mouseover', (e) => { const a = e.isTrusted && link(e.target); if (a) status(a.href); }, true);
  addEventListener('mouseout', (e) => { if (e.isTrusted && link(e.target)) status(''); }, true);
};
