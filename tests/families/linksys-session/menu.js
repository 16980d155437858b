// Each address in the menu ends with the session; without it the router asks to log in again.
var session_key = "7f3a";
function draw_menu(current) {
  var main = [["index.asp", "Setup"], ["Wireless_Basic.asp", "Wireless"], ["SingleForward.asp", "Applications and Gaming"]];
  var sub = {"index.asp": [["index.asp", "Basic Setup"], ["DDNS.asp", "DDNS"]],
    "SingleForward.asp": [["SingleForward.asp", "Single Port Forwarding"], ["Forward.asp", "Port Range Forwarding"]]};
  var at = current === "Forward.asp" ? "SingleForward.asp" : current;
  main.concat(sub[at]).forEach(function (item) {
    document.write(item[0] === current ? "<B>" + item[1] + "</B> | " :
      "<A href=" + item[0] + ";session_id=" + session_key + ">" + item[1] + "</A> | ");
  });
}
