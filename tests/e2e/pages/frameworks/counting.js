// Counts the input and change events that reach the document, by field name.
window.counts = {};
for (const kind of ['input', 'change']) document.addEventListener(kind, (e) => {
  const key = e.target.name + ' ' + kind; counts[key] = (counts[key] || 0) + 1; });
