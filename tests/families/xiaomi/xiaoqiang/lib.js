function post(url, data, done) {
  var request = new XMLHttpRequest();
  request.open("POST", url);
  request.setRequestHeader("Content-Type", "application/x-www-form-urlencoded; charset=UTF-8");
  request.onload = function () {
    done(JSON.parse(request.responseText));
  };
  request.send(typeof data === "string" ? data : Object.keys(data).map(function (key) {
    return key + "=" + encodeURIComponent(data[key]);
  }).join("&"));
}
function getJSON(url, done) {
  var request = new XMLHttpRequest();
  request.open("GET", url);
  request.onload = function () {
    done(JSON.parse(request.responseText));
  };
  request.send();
}
// Stands for the hash of the router's own pages.
function hashOf(text) {
  var value = 5381;
  for (var i = 0; i < text.length; i++) {
    value = (value * 33 + text.charCodeAt(i)) % 4294967296;
  }
  return value.toString(16);
}
function encode(text) {
  return text.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/"/g, "&quot;");
}
// A box over the page; ok() that gives back false keeps it open.
function dialog(options) {
  var outer = document.createElement("div");
  outer.className = "d-outer";
  outer.style.cssText = "position:fixed;left:30%;top:20%;background:#fff;border:1px solid #999;z-index:1987;padding:12px";
  outer.innerHTML = '<div class="d-title">' + options.title + '</div><div class="d-content">' + options.content +
    '</div><div class="d-buttons"></div>';
  document.body.appendChild(outer);
  var close = function () {
    outer.remove();
  };
  var button = function (value, act) {
    var element = document.createElement("input");
    element.type = "button";
    element.value = value;
    element.onclick = function () {
      if (act() !== false) {
        close();
      }
    };
    outer.querySelector(".d-buttons").appendChild(element);
  };
  if (options.ok) {
    button(options.okValue || "OK", options.ok);
  }
  if (options.cancel) {
    button("Cancel", options.cancel);
  }
  if (options.initialize) {
    options.initialize();
  }
  return {close: close};
}
// Puts a drop-down of its own over each select: the select itself is hidden.
function selectBeautify() {
  document.querySelectorAll("select.beautify").forEach(function (select) {
    var shown = document.createElement("div");
    shown.className = "select-beautify";
    var text = document.createElement("span");
    var list = document.createElement("ul");
    list.style.display = "none";
    var show = function () {
      text.textContent = select.options[select.selectedIndex].text;
    };
    Array.from(select.options).forEach(function (option, i) {
      var item = document.createElement("li");
      item.textContent = option.text;
      item.onclick = function () {
        select.selectedIndex = i;
        list.style.display = "none";
        show();
      };
      list.appendChild(item);
    });
    text.onclick = function () {
      list.style.display = list.style.display === "none" ? "block" : "none";
    };
    select.style.display = "none";
    select.onchange = show;
    shown.appendChild(text);
    shown.appendChild(list);
    select.parentNode.appendChild(shown);
    show();
  });
}
