// Runs in the page's own world, before the page's scripts: says when the page's alert, confirm or
// prompt opens and closes, since a document behind a dialog answers nothing meanwhile. The page
// could raise these events itself; that would only hold up the filling of its own fields.
(() => {
  for (const name of ['alert', 'confirm', 'prompt']) {
    const shown = window[name];
    if (typeof shown !== 'function') continue;
    window[name] = function (...args) {
      dispatchEvent(new Event('tolvane-dialog-open'));
      try {
        return shown.apply(this, args);
      } finally {
        dispatchEvent(new Event('tolvane-dialog-closed'));
      }
    };
  }
})();
