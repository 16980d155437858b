// A small stand-in for the library of the router's own pages: what is typed is kept in a model, the
// page is drawn again from it, and only the model is sent.
function call(topic, data, done) {
  var request = new XMLHttpRequest();
  request.open("POST", "/cgi-bin/cstecgi.cgi");
  request.setRequestHeader("Content-Type", "application/json");
  request.onload = function () {
    done(JSON.parse(request.responseText));
  };
  request.send(JSON.stringify(Object.assign({topicurl: topic}, data)));
}
function escapeHtml(text) {
  return text.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/"/g, "&quot;");
}
function message(text, ok) {
  var box = document.createElement("div");
  box.className = "cs-msg";
  box.style.cssText = "position:fixed;left:30%;top:30%;background:#fff;border:1px solid;padding:9px";
  box.innerHTML = "<p></p><button type=button>OK</button>";
  box.querySelector("p").textContent = text;
  box.querySelector("button").onclick = function () {
    box.remove();
    if (ok) {
      ok();
    }
  };
  document.body.appendChild(box);
}
// Counts down over the page, then goes on.
function applyLoad(seconds, done) {
  var cover = document.createElement("div");
  cover.style.cssText = "position:fixed;left:0;top:0;right:0;bottom:0;background:#eee";
  document.body.appendChild(cover);
  var left = Number(seconds);
  var count = function () {
    cover.innerHTML = "Please wait " + left + " s";
    if (left === 0) {
      done();
      return;
    }
    left -= 1;
    setTimeout(count, 1000);
  };
  count();
}
