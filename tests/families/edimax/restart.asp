<html>
<head><script>
var left = 1;
function count() {
  document.getElementById("time").innerHTML = left;
  if (left === 0) {
    location.href = "/adv_portforward.asp";
    return;
  }
  left -= 1;
  setTimeout("count()", 1000);
}
</script></head>
<body onload="count()">Module is reloading, please wait <span id="time"></span> seconds.</body>
</html>
