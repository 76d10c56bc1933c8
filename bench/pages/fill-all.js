// The limit: every field of form100.html set in one script evaluation.
(() => {
  const form = document.forms[0];
  for (let i = 0; i < 40; i++) form.elements['t' + i].value = 'value ' + i;
  for (let i = 0; i < 10; i++) {
    form.querySelector('[name=r' + i + '][value=b]').checked = true;
    form.elements['s' + i].value = 'y';
    form.elements['a' + i].value = 'two\nlines';
  }
  for (let i = 0; i < 20; i++) form.elements['c' + i].checked = true;
  return form.elements.t0.value;
})()
