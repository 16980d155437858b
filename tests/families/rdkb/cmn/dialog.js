// The boxes of these pages: made of elements, over everything else.
function box(title, text, buttons) {
  jHide();
  var back = document.createElement("div");
  back.id = "popup_container";
  back.setAttribute("role", "dialog");
  back.style.cssText = "position:fixed;left:20%;top:20%;background:#fff;border:1px solid;padding:9px;z-index:99";
  back.innerHTML = "<h1 id=popup_title></h1><div id=popup_message></div><div id=popup_panel></div>";
  document.body.appendChild(back);
  document.getElementById("popup_title").textContent = title;
  document.getElementById("popup_message").textContent = text;
  buttons.forEach(function (each) {
    var button = document.createElement("input");
    button.type = "button";
    button.value = each[0];
    button.id = "popup_" + each[0].toLowerCase();
    button.onclick = function () {
      jHide();
      each[1]();
    };
    document.getElementById("popup_panel").appendChild(button);
  });
}
function jHide() {
  var old = document.getElementById("popup_container");
  if (old) {
    old.remove();
  }
}
function jAlert(text) {
  box("Alert", text, [["OK", function () {}]]);
}
function jConfirm(text, title, done) {
  box(title, text, [["OK", function () { done(true); }], ["Cancel", function () { done(false); }]]);
}
function jProgress(text) {
  box("Please wait", text, []);
}
function post(url, data, done) {
  var request = new XMLHttpRequest();
  request.open("POST", url);
  request.setRequestHeader("Content-Type", "application/x-www-form-urlencoded");
  request.onload = function () {
    done(JSON.parse(request.responseText));
  };
  request.send(Object.keys(data).map(function (key) {
    return key + "=" + encodeURIComponent(data[key]);
  }).join("&"));
}
