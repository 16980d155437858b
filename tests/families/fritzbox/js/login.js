// Stands for the MD5 of the router's own pages: the password is never sent.
function hashOf(text) {
  var value = 5381;
  for (var i = 0; i < text.length; i++) {
    value = (value * 33 + text.charCodeAt(i)) % 4294967296;
  }
  return value.toString(16);
}
