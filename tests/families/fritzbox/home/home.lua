<!DOCTYPE html>
<html>
<head><title>FRITZ!Box 7390</title></head>
<body>
<ul id="menu"><li><a href="/home/home.lua?sid={{session}}">Overview</a></li><li><a href="/internet/inetstat_monitor.lua?sid={{session}}">Internet</a></li></ul>
<h2>Overview</h2>
<table><tr><td>FRITZ!OS</td><td>06.03</td></tr><tr><td>DSL</td><td>connected</td></tr></table>
</body>
</html>
