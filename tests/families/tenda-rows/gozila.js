// The values that the router writes into a page, by name, and checks of boxes.
var CFG = {};
function addCfg(name, number, value) {
  CFG[name] = value;
}
function getCfg(name) {
  return CFG[name] || "";
}
function rangeCheck(box, least, most, what) {
  if (!/^\d+$/.test(box.value) || Number(box.value) < least || Number(box.value) > most) {
    alert(what + " invalid!");
    box.focus();
    return false;
  }
  return true;
}
function tbl_tail_save(form) {
  document.write('<table width="90%"><tr><td align="center">' +
    '<input type="button" class="button1" value="Ok" onclick="preSubmit(' + form + ')"> ' +
    '<input type="button" class="button1" value="Cancel" onclick="init(' + form + ')"></td></tr></table>');
}
