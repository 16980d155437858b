function post(url, data, done) {
  var request = new XMLHttpRequest();
  request.open("POST", url);
  request.setRequestHeader("Content-Type", "application/x-www-form-urlencoded");
  request.onload = function () {
    done(request.responseText);
  };
  request.send(Object.keys(data).map(function (key) {
    return key + "=" + encodeURIComponent(data[key]);
  }).join("&"));
}
// Stands for the proof of the router's own pages.
function hashOf(text) {
  var value = 5381;
  for (var i = 0; i < text.length; i++) {
    value = (value * 33 + text.charCodeAt(i)) % 4294967296;
  }
  return value.toString(16);
}
// Cards open their dialog from a page of their own; its tables post themselves and are shown again.
function show(html) {
  var modal = document.querySelector(".modal");
  if (!modal) {
    modal = document.createElement("div");
    modal.className = "modal fade in";
    modal.style.cssText = "position:absolute;left:9px;top:9px;background:#fff;border:1px solid";
    document.body.appendChild(modal);
  }
  modal.innerHTML = html;
}
function table(action, element) {
  var around = element.closest(".control-group").querySelector("table");
  var data = {tableid: around.id, stateid: "", action: action, index: "-1",
    CSRFtoken: document.querySelector("meta[name=CSRFtoken]").content};
  around.querySelectorAll(".line-edit input,.line-edit select").forEach(function (box) {
    data[box.name] = box.value;
  });
  var row = element.closest("tbody tr");
  if (row) {
    data.index = Array.from(row.parentNode.children).indexOf(row) + 1;
  }
  post("/modals/wanservices-modal.lp", data, show);
}
document.addEventListener("click", function (event) {
  var opener = event.target.closest("[data-remote]");
  if (opener) {
    var request = new XMLHttpRequest();
    request.open("GET", "/" + opener.getAttribute("data-remote"));
    request.onload = function () {
      show(request.responseText);
    };
    request.send();
  }
  [["btn-table-new", "TABLE-NEW"], ["btn-table-add", "TABLE-ADD"], ["btn-table-cancel", "TABLE-CANCEL"],
    ["btn-table-delete", "TABLE-DELETE"]].forEach(function (each) {
    var button = event.target.closest("." + each[0] + ":not(.disabled)");
    if (button) {
      table(each[1], button);
    }
  });
});
